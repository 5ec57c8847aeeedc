// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The reference for the application's cold launch: a minimal Qt Widgets program that opens a PNG in a label,
// scaled to fit two thirds of the screen, and shows it. Like the application, with CORVEX_BENCH_PAINTED_FD
// set it writes one line to that descriptor once it has painted the picture.
#include <QApplication>
#include <QImageReader>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <unistd.h>

namespace {

class Label : public QLabel
{
protected:
    void paintEvent(QPaintEvent *event) override
    {
        QLabel::paintEvent(event);
        static bool announced = false;
        if (!announced && qEnvironmentVariableIsSet("CORVEX_BENCH_PAINTED_FD")) {
            announced = true;
            const ssize_t written =
                write(qEnvironmentVariableIntValue("CORVEX_BENCH_PAINTED_FD"), "painted\n", 8);
            Q_UNUSED(written)
        }
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QImageReader reader(QApplication::arguments().value(1));
    const QSize room = QApplication::primaryScreen()->availableSize() * 2 / 3;
    reader.setScaledSize(reader.size().scaled(room, Qt::KeepAspectRatio));
    Label label;
    label.setPixmap(QPixmap::fromImage(reader.read()));
    label.setWindowTitle(QStringLiteral("reference"));
    label.show();
    return application.exec();
}
