// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The main of every test program: a fresh temporary home with its own XDG folders, a private D-Bus session
// bus, Qt's offscreen platform, then the tests. Nothing outside the temporary folder is touched.
#include <QApplication>
#include <QByteArray>
#include <QDir>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string g_root;
pid_t g_busPid = -1;

void removeTree(const std::string &path)
{
    if (!path.empty())
        QDir(QString::fromStdString(path)).removeRecursively();
}

void setUpHome()
{
    char pattern[] = "/tmp/corvex-test-XXXXXX";
    const char *root = mkdtemp(pattern);
    if (!root) {
        std::perror("mkdtemp");
        std::exit(2);
    }
    g_root = root;
    const std::string home = g_root + "/home";
    const std::pair<const char *, std::string> vars[] = {
        {"HOME", home},
        {"XDG_CONFIG_HOME", home + "/.config"},
        {"XDG_DATA_HOME", home + "/.local/share"},
        {"XDG_CACHE_HOME", home + "/.cache"},
        {"XDG_STATE_HOME", home + "/.local/state"},
        {"XDG_RUNTIME_DIR", g_root + "/runtime"},
    };
    for (const auto &[name, value] : vars) {
        QDir().mkpath(QString::fromStdString(value));
        setenv(name, value.c_str(), 1);
    }
    chmod((g_root + "/runtime").c_str(), 0700);
    unsetenv("XDG_CONFIG_DIRS");
    unsetenv("XDG_CURRENT_DESKTOP");
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("LANG", "en_US.UTF-8", 0);
}

// A private session bus for this process and the programs it starts.
void startPrivateBus()
{
    int fds[2];
    if (pipe(fds) != 0)
        return;
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], STDOUT_FILENO);
        close(fds[0]);
        close(fds[1]);
        execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
               static_cast<char *>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    if (pid < 0) {
        close(fds[0]);
        return;
    }
    std::string address;
    char c;
    while (read(fds[0], &c, 1) == 1 && c != '\n')
        address.push_back(c);
    close(fds[0]);
    if (address.empty()) {
        std::fprintf(stderr, "test: could not start a private D-Bus session bus\n");
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
        return;
    }
    g_busPid = pid;
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

void cleanUp()
{
    if (g_busPid > 0) {
        kill(g_busPid, SIGTERM);
        waitpid(g_busPid, nullptr, 0);
        g_busPid = -1;
    }
    if (!std::getenv("CORVEX_KEEP_TEST_HOME"))
        removeTree(g_root);
}

} // namespace

int main(int argc, char **argv)
{
    setUpHome();
    // Listing the tests (CTest's discovery) needs neither a bus nor an application.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    if (!listing)
        startPrivateBus();
    std::atexit(cleanUp);

    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    const int result = RUN_ALL_TESTS();
    return result;
}
