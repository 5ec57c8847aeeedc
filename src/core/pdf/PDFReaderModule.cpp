// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The PDF reader module: page 1 of a document, measured by its media box with poppler's core and drawn
// through poppler's QPainter renderer, or, when it is nothing but one upright image, that image decoded row
// by row into the page with the same conversions the renderer makes: straight into it when it lies pixel
// for pixel on the page, else drawn with the renderer's own call a band of page rows at a time, only the
// rows the band samples being held.
#include "core/PDFReaderModule.h"

// poppler's core headers want its object model first.
#include <Object.h>

#include <Array.h>
#include <Dict.h>
#include <Error.h>
#include <GfxState.h>
#include <GlobalParams.h>
#include <PDFDoc.h>
#include <Page.h>
#include <Parser.h>
#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <Stream.h>
#include <XRef.h>
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <poppler-qt6.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr double InchesPerMeter = 0.0254;

std::atomic<void (*)(const QString &)> gMessageHandler{nullptr};

// poppler's shared state (its global parameters, which its Qt documents make and drop as they come and go)
// is touched by one call at a time.
std::mutex gPopplerMutex;

void forwardPopplerMessage(const QString &message, const QVariant &)
{
    if (const auto handler = gMessageHandler.load())
        handler(message);
}

void forwardCoreMessage(ErrorCategory, Goffset position, const char *message)
{
    forwardPopplerMessage(position >= 0
                              ? QStringLiteral("Error (%1): %2").arg(position).arg(QString::fromUtf8(message))
                              : QStringLiteral("Error: %1").arg(QString::fromUtf8(message)),
                          QVariant());
}

// A document written into memory.
class ByteArrayOutStream final : public OutStream
{
public:
    explicit ByteArrayOutStream(QByteArray *bytes) : mBytes(bytes) {}
    void close() override {}
    Goffset getPos() override { return mBytes->size(); }
    void put(char c) override { mBytes->append(c); }
    void printf(const char *format, ...) override
    {
        va_list arguments;
        va_start(arguments, format);
        va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, format, arguments);
        va_end(arguments);
        if (length > 0) {
            const qsizetype at = mBytes->size();
            mBytes->resize(at + length + 1);
            std::vsnprintf(mBytes->data() + at, size_t(length) + 1, format, again);
            mBytes->chop(1);
        }
        va_end(again);
    }

private:
    QByteArray *mBytes;
};

struct FirstPage
{
    // The document as poppler's core reads it, and its page 1 (owned by the document).
    std::unique_ptr<PDFDoc> document;
    Page *page = nullptr;
    PDFReaderModule::Status status = PDFReaderModule::Status::NotOpened;

    // Page 1's media box in points, as it lies in the file: its /Rotate is not applied.
    QSizeF mediaSize() const
    {
        const PDFRectangle *box = page->getMediaBox();
        return QSizeF(std::abs(box->x2 - box->x1), std::abs(box->y2 - box->y1));
    }
};

FirstPage openFirstPage(const QString &path)
{
    if (!globalParams)
        globalParams = std::make_unique<GlobalParams>();
    setErrorCallback(forwardCoreMessage);
    FirstPage first;
    first.document =
        std::make_unique<PDFDoc>(std::make_unique<GooString>(QFile::encodeName(path).constData()));
    if (!first.document->isOk()) {
        first.document.reset();
        return first;
    }
    if (first.document->getNumPages() > 0)
        first.page = first.document->getPage(1);
    first.status = first.page ? PDFReaderModule::Status::Ok : PDFReaderModule::Status::NoFirstPage;
    return first;
}

// Whether the renderer is shown page 1 as it lies in the file: no crop box of its own, no rotation.
bool showsTheMediaBoxAsItLies(Page *page)
{
    const PDFRectangle *media = page->getMediaBox(), *crop = page->getCropBox();
    return page->getRotate() == 0 && media->x1 == crop->x1 && media->y1 == crop->y1 &&
           media->x2 == crop->x2 && media->y2 == crop->y2;
}

// The document for the renderer, which draws a page's crop box turned by its /Rotate: when page 1 has a
// crop box of its own or a rotation, a copy in memory whose page 1 shows its whole media box as it lies.
std::unique_ptr<Poppler::Document> documentShowingTheMediaBox(const QString &path, FirstPage &first)
{
    if (showsTheMediaBoxAsItLies(first.page))
        return Poppler::Document::load(path);
    const PDFRectangle *media = first.page->getMediaBox();
    XRef *xref = first.document->getXRef();
    const Ref ref = first.page->getRef();
    Object dictionary = xref->fetch(ref);
    if (!dictionary.isDict())
        return nullptr;
    auto *box = new Array(xref);
    for (const double edge : {media->x1, media->y1, media->x2, media->y2})
        box->add(Object(edge));
    dictionary.dictSet("CropBox", Object(box));
    dictionary.dictSet("Rotate", Object(0));
    xref->setModifiedObject(&dictionary, ref);
    QByteArray bytes;
    ByteArrayOutStream out(&bytes);
    if (first.document->saveAs(&out, writeStandard) != errNone)
        return nullptr;
    return Poppler::Document::loadFromData(bytes);
}

// Page 1 drawn by poppler's QPainter renderer; first is let go of once the renderer has its document.
QImage drawnPage(const QString &path, FirstPage &first, const QSize &size)
{
    const std::unique_ptr<Poppler::Document> document = documentShowingTheMediaBox(path, first);
    first = FirstPage(); // the core's copy is no longer needed
    const std::unique_ptr<Poppler::Page> page =
        document && !document->isLocked() ? document->page(0) : nullptr;
    if (!page)
        return {};
    // The QPainter renderer draws an image placed at 1:1 pixel for pixel; the Splash renderer smooths it.
    // Shapes are not antialiased, which would blend the page's outermost pixels of a full-page image with
    // the transparent paper; text still is.
    document->setRenderBackend(Poppler::Document::QPainterBackend);
    document->setPaperColor(Qt::transparent);
    document->setRenderHint(Poppler::Document::Antialiasing, false);
    document->setRenderHint(Poppler::Document::TextAntialiasing, true);
    // Drawn into premultiplied pixels, the raster engine's own format: about a fifth quicker than the
    // straight-alpha image the renderer would make itself.
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    QPainter painter(&image);
    if (!page->renderToPainter(&painter, 72.0, 72.0, 0, 0, size.width(), size.height()))
        return {};
    return image;
}

// The entry of a dictionary when there is one (null otherwise, also when the dictionary is none).
Object entry(const Object &dictionary, const char *key)
{
    return dictionary.isDict() ? dictionary.dictLookup(key) : Object(objNull);
}

bool isOneOf(std::string_view key, std::initializer_list<std::string_view> keys)
{
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

// Whether each entry of the dictionary is one of the keys, or one that accepted(key, value) allows.
template <typename Accepted>
bool hasOnly(const Dict *dict, std::initializer_list<std::string_view> keys, Accepted accepted)
{
    for (int i = 0; i < dict->getLength(); ++i)
        if (!isOneOf(dict->getKey(i), keys) && !accepted(std::string_view(dict->getKey(i)), dict->getVal(i)))
            return false;
    return true;
}

// Graphics state parameters that leave an image's pixels as they are: line settings, full opacity, the
// normal blend mode and no soft mask.
bool leavesImagesAlone(const Object &parameters)
{
    return parameters.isDict() &&
           hasOnly(parameters.getDict(), {"Type", "SA", "SM", "AIS", "LW", "LC", "LJ", "ML", "D", "RI", "FL"},
                   [](std::string_view key, const Object &value) {
                       if (key == "ca" || key == "CA")
                           return value.isNum() && value.getNum() == 1;
                       if (key == "SMask")
                           return value.isName("None");
                       return key == "BM" && (value.isName("Normal") || value.isName("Compatible"));
                   });
}

// An image (or the soft mask of one) of 8-bit device grey or RGB samples, compressed with Flate or as a
// JPEG or not at all, without a colour key or stencil mask, nor anything else that would change how it is
// drawn.
bool isPlainImage(const Object &image, bool isMask)
{
    if (!image.isStream())
        return false;
    const Dict *dict = image.streamGetDict();
    Object filter = dict->lookup("Filter");
    if (filter.isArray() && filter.arrayGetLength() == 1)
        filter = filter.arrayGet(0);
    const Object bits = dict->lookup("BitsPerComponent"), space = dict->lookup("ColorSpace");
    return dict->lookup("Subtype").isName("Image") && bits.isInt() && bits.getInt() == 8 &&
           (space.isName("DeviceGray") || (!isMask && space.isName("DeviceRGB"))) &&
           (filter.isNull() || filter.isName("FlateDecode") || filter.isName("DCTDecode")) &&
           hasOnly(dict,
                   {"Type", "Subtype", "Width", "Height", "BitsPerComponent", "ColorSpace", "Filter",
                    "DecodeParms", "Length", "Name", "Metadata", "StructParent", "ID"},
                   [isMask](std::string_view key, const Object &value) {
                       if (key == "Interpolate")
                           return value.isBool() && !value.getBool();
                       return !isMask && (key == "Decode" || key == "Intent" || key == "SMask");
                   });
}

// The one image a page shows, upright on the page.
struct PlacedImage
{
    Object image, mask; // the image's stream and its soft mask's (none: null)
    QSize size;         // in samples
    QTransform square;  // the image's unit square onto the page, as the renderer's current transformation

    // Where the image lies on the page, in pixels from the top left corner.
    QRectF area() const { return square.mapRect(QRectF(0, 0, 1, 1)); }
    // Whether the image lies on whole pixels within the area (the page's pixels inside its media box), at one
    // pixel per sample.
    bool liesOnThePixels(const QRectF &within) const
    {
        const QRectF on = area();
        return on.size() == QSizeF(size) && on.topLeft() == on.topLeft().toPoint() && within.contains(on);
    }
};

// The image page 1 shows when it shows nothing else, drawn upright (its first row at the top, neither
// turned nor slanted). The content may set colours, line settings and graphics states that
// leave images alone, and move and scale by cm, around one image drawn by Do; anything else (another
// drawing, text, clipping, a soft mask, transparency, annotations...) and the page is drawn by the renderer.
// state starts as the renderer's does for the page: its transformation is followed as the renderer's is.
std::optional<PlacedImage> imageAloneOnThePage(FirstPage &first, GfxState &state)
{
    Page *page = first.page;
    XRef *xref = first.document->getXRef();
    Dict *resources = page->getResourceDict();
    const Object annotations = page->getAnnotsObject();
    if (!showsTheMediaBoxAsItLies(page) || !resources || page->getGroup() ||
        !(annotations.isNull() || (annotations.isArray() && annotations.arrayGetLength() == 0)) ||
        !entry(xref->getCatalog(), "OutputIntents").isNull())
        return std::nullopt;
    // Device colours stand for themselves, without a default colour space in their place.
    const Object spaces = resources->lookup("ColorSpace");
    if (!entry(spaces, "DefaultGray").isNull() || !entry(spaces, "DefaultRGB").isNull() ||
        !entry(spaces, "DefaultCMYK").isNull())
        return std::nullopt;
    Object contents = page->getContents();
    if (!contents.isStream() && !contents.isArray())
        return std::nullopt;

    std::optional<PlacedImage> placed;
    std::vector<std::array<double, 6>> saved;
    std::vector<Object> operands;
    Parser parser(xref, &contents, false);
    for (Object token = parser.getObj(); !token.isEOF(); token = parser.getObj()) {
        if (!token.isCmd()) {
            if (token.isError() || operands.size() == 8)
                return std::nullopt;
            operands.push_back(std::move(token));
            continue;
        }
        const std::string_view op = token.getCmd();
        const bool oneName = operands.size() == 1 && operands[0].isName();
        if (op == "q" && operands.empty()) {
            const double *m = state.getCTM();
            saved.push_back({m[0], m[1], m[2], m[3], m[4], m[5]});
        } else if (op == "Q" && operands.empty() && !saved.empty()) {
            const std::array<double, 6> m = saved.back();
            state.setCTM(m[0], m[1], m[2], m[3], m[4], m[5]);
            saved.pop_back();
        } else if (op == "cm" && operands.size() == 6 &&
                   std::all_of(operands.begin(), operands.end(), [](const Object &o) { return o.isNum(); })) {
            state.concatCTM(operands[0].getNum(), operands[1].getNum(), operands[2].getNum(),
                            operands[3].getNum(), operands[4].getNum(), operands[5].getNum());
        } else if (op == "gs" && oneName) {
            if (!leavesImagesAlone(entry(resources->lookup("ExtGState"), operands[0].getName())))
                return std::nullopt;
        } else if (op == "Do" && oneName && !placed) {
            Object image = entry(resources->lookup("XObject"), operands[0].getName());
            if (!isPlainImage(image, false))
                return std::nullopt;
            const Dict *dict = image.streamGetDict();
            const Object width = dict->lookup("Width"), height = dict->lookup("Height");
            Object mask = dict->lookup("SMask");
            const auto sameSize = [&](const Object &other) {
                const Dict *of = other.streamGetDict();
                const Object w = of->lookup("Width"), h = of->lookup("Height");
                return w.isInt() && h.isInt() && w.getInt() == width.getInt() &&
                       h.getInt() == height.getInt();
            };
            if (!width.isInt() || !height.isInt() || width.getInt() < 1 || height.getInt() < 1 ||
                (!mask.isNull() && !(isPlainImage(mask, true) && sameSize(mask))))
                return std::nullopt;
            // The image's unit square, its first row at the top, onto the page.
            const double *m = state.getCTM();
            const QTransform square(m[0], m[1], m[2], m[3], m[4], m[5]);
            if (m[0] <= 0 || m[1] != 0 || m[2] != 0 || m[3] >= 0)
                return std::nullopt;
            placed = PlacedImage{std::move(image), std::move(mask), QSize(width.getInt(), height.getInt()),
                                 square};
        } else if (!isOneOf(op, {"cs", "CS", "sc", "scn", "SC", "SCN", "g", "G", "rg", "RG", "k", "K", "w",
                                 "J", "j", "M", "d", "ri", "i"})) {
            return std::nullopt;
        }
        operands.clear();
    }
    return placed;
}

// Reads an image's rows, with the colour map the renderer makes for it.
struct ImageRows
{
    std::unique_ptr<GfxImageColorMap> colors;
    std::unique_ptr<ImageStream> rows;

    ImageRows(const Object &image, GfxState &state)
    {
        const Dict *dict = image.streamGetDict();
        Object space = dict->lookup("ColorSpace"), decode = dict->lookup("Decode");
        GfxColorSpace *colorSpace = GfxColorSpace::parse(nullptr, &space, nullptr, &state);
        if (!colorSpace)
            return;
        colors = std::make_unique<GfxImageColorMap>(8, &decode, colorSpace);
        if (!colors->isOk())
            return;
        rows = std::make_unique<ImageStream>(image.getStream(), dict->lookup("Width").getInt(),
                                             colors->getNumPixelComps(), colors->getBits());
        rows->reset();
    }
    ~ImageRows()
    {
        if (rows)
            rows->close();
    }
    ImageRows(const ImageRows &) = delete;
    ImageRows &operator=(const ImageRows &) = delete;
};

// An image and its soft mask read row by row, each row as the renderer makes it: the colour map's RGB row,
// opaque or with the soft mask's grey row as alpha (straight, not premultiplied).
class StraightRows
{
public:
    StraightRows(const PlacedImage &placed, GfxState &state)
        : mImage(placed.image, state), mWidth(placed.size.width())
    {
        if (!placed.mask.isNull()) {
            mMask.emplace(placed.mask, state);
            mAlpha.resize(size_t(mWidth));
        }
    }

    bool isOk() const { return mImage.rows && (!mMask || mMask->rows); }
    bool isOpaque() const { return !mMask; }

    // Passes over the next row, false when it cannot be read.
    bool skip() { return mImage.rows->getLine() && (!mMask || mMask->rows->getLine()); }

    // The next row into pixels, false when it cannot be read.
    bool read(unsigned int *pixels)
    {
        unsigned char *samples = mImage.rows->getLine();
        unsigned char *maskSamples = mMask ? mMask->rows->getLine() : nullptr;
        if (!samples || (mMask && !maskSamples))
            return false;
        mImage.colors->getRGBLine(samples, pixels, mWidth);
        if (mMask)
            mMask->colors->getGrayLine(maskSamples, mAlpha.data(), mWidth);
        for (int x = 0; x < mWidth; ++x)
            pixels[x] |= mMask ? unsigned(mAlpha[size_t(x)]) << 24 : 0xff000000;
        return true;
    }

private:
    ImageRows mImage;
    std::optional<ImageRows> mMask;
    int mWidth;
    std::vector<unsigned char> mAlpha;
};

// Decodes the image lying on the page's pixels row by row into its place: its straight rows drawn onto the
// transparent page come out as Qt's own premultiplication of them. False when the image cannot be read.
bool decodeInto(QImage &page, const PlacedImage &placed, GfxState &state)
{
    StraightRows rows(placed, state);
    if (!rows.isOk())
        return false;
    const QPoint at = placed.area().topLeft().toPoint();
    const size_t bytes = size_t(placed.size.width()) * 4;
    QImage straight(placed.size.width(), 1, QImage::Format_ARGB32);
    for (int y = 0; y < placed.size.height(); ++y) {
        uchar *row = page.scanLine(at.y() + y) + size_t(at.x()) * 4;
        if (rows.isOpaque()) {
            if (!rows.read(reinterpret_cast<unsigned int *>(row)))
                return false;
            continue;
        }
        straight.reinterpretAsFormat(QImage::Format_ARGB32);
        if (!rows.read(reinterpret_cast<unsigned int *>(straight.bits())))
            return false;
        straight.convertTo(QImage::Format_ARGB32_Premultiplied);
        std::memcpy(row, straight.constBits(), bytes);
    }
    return true;
}

// Rows of an image each band holds beyond those its page rows sample, on either side.
constexpr int BandMargin = 2;
// About as many rows of the image as a band takes.
constexpr int BandImageRows = 64;

// An image of the full size over address space that is reserved, not taken: a row takes memory once it is
// written, and gives it back when released. Rows never written read as transparent.
class ReservedImage
{
public:
    ReservedImage(int width, int height)
        : mBytesPerLine(size_t(width) * 4), mBytes(mBytesPerLine * size_t(height))
    {
        void *at =
            mmap(nullptr, mBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (at == MAP_FAILED)
            return;
        mData = static_cast<uchar *>(at);
        mImage = QImage(mData, width, height, qsizetype(mBytesPerLine), QImage::Format_ARGB32);
    }
    ~ReservedImage()
    {
        mImage = QImage();
        if (mData)
            munmap(mData, mBytes);
    }
    ReservedImage(const ReservedImage &) = delete;
    ReservedImage &operator=(const ReservedImage &) = delete;

    const QImage &image() const { return mImage; }
    unsigned int *row(int y) { return reinterpret_cast<unsigned int *>(mData + mBytesPerLine * size_t(y)); }
    // Takes the memory of rows [from, to) at once, rather than a page at a time as they are written (only a
    // hint: without it they are taken as they are written).
    void bringIn(int from, int to)
    {
#ifdef MADV_POPULATE_WRITE
        const size_t page = size_t(sysconf(_SC_PAGESIZE));
        const size_t begin = mBytesPerLine * size_t(from) / page * page;
        const size_t end = mBytesPerLine * size_t(to);
        if (begin < end)
            madvise(mData + begin, end - begin, MADV_POPULATE_WRITE);
#else
        Q_UNUSED(from);
        Q_UNUSED(to);
#endif
    }
    // Gives back the memory of rows [from, to): the pages that lie wholly within them.
    void release(int from, int to)
    {
        const size_t page = size_t(sysconf(_SC_PAGESIZE));
        const size_t begin = (mBytesPerLine * size_t(from) + page - 1) / page * page;
        const size_t end = mBytesPerLine * size_t(to) / page * page;
        if (begin < end)
            madvise(mData + begin, end - begin, MADV_DONTNEED);
    }

private:
    size_t mBytesPerLine, mBytes;
    uchar *mData = nullptr;
    QImage mImage;
};

// Draws the image onto the page with the very call the renderer makes, a band of page rows at a time: its
// straight rows upside down (the last first) in an image of the full size, drawn from the unit square through
// the placement, unsmoothed, clipped to the media box through the page's transformation. Only the image's
// rows a band's pixels sample, and a margin, are there when it is drawn: decoded once as the bands go down
// the page (the rows two bands share are kept), given back once the bands have passed them. False when the
// image cannot be read.
bool drawInBands(QImage &page, const PlacedImage &placed, const QTransform &pageTransform,
                 const PDFRectangle &media, GfxState &state)
{
    StraightRows rows(placed, state);
    if (!rows.isOk())
        return false;
    const int width = placed.size.width(), height = placed.size.height();
    ReservedImage whole(width, height);
    if (whole.image().isNull())
        return false;
    // The upside-down image's pixels onto the page, and back.
    const QTransform back = (QTransform::fromScale(1.0 / width, 1.0 / height) * placed.square).inverted();
    const QRectF area = placed.area();
    const int top = std::max(0, int(std::floor(area.top())));
    const int bottom = std::min(page.height(), int(std::ceil(area.bottom())));
    const int bandHeight = std::max(1, int(BandImageRows * area.height() / height));
    QPainterPath box;
    box.moveTo(media.x1, media.y1);
    box.lineTo(media.x2, media.y1);
    box.lineTo(media.x2, media.y2);
    box.lineTo(media.x1, media.y2);
    box.lineTo(media.x1, media.y1);
    QPainter painter(&page);
    painter.setTransform(pageTransform);
    painter.setClipPath(box);
    painter.resetTransform();
    int kept = height; // the rows from here down (upside down) are given back
    int next = 0;      // the next row of the image to read, from the top
    for (int y = top; y < bottom; y += bandHeight) {
        const int end = std::min(bottom, y + bandHeight);
        const double from = back.map(QPointF(0, end)).y(), to = back.map(QPointF(0, y)).y();
        const int first = std::max(0, int(std::floor(from)) - BandMargin);
        const int last = std::min(height, int(std::ceil(to)) + BandMargin);
        if (first >= last)
            continue;
        // Row r of the image from the top is row height - 1 - r of the upside-down one.
        whole.bringIn(first, std::min(last, height - next));
        for (; next < height - first; ++next) {
            const bool wanted = next >= height - last;
            if (!(wanted ? rows.read(whole.row(height - 1 - next)) : rows.skip()))
                return false;
        }
        whole.release(last, kept);
        kept = std::min(kept, last);
        painter.save();
        painter.setClipRect(QRect(0, y, page.width(), end - y), Qt::IntersectClip);
        painter.setTransform(placed.square);
        painter.drawImage(QRectF(0, 0, 1, 1), whole.image(), QRectF(0, 0, width, height));
        painter.restore();
    }
    return true;
}

// Page 1 with its one image decoded into it; a null image when the page is not one upright image on its
// own, or the image cannot be read.
QImage decodedPage(FirstPage &first, const QSize &size)
{
    // The renderer's starting state for the page at one pixel per point, y downwards. A media box of
    // fractions of a point lies on the page's pixels from its top left corner, the page being its size
    // rounded to whole pixels.
    const PDFRectangle &media = *first.page->getMediaBox();
    GfxState state(72.0, 72.0, &media, 0, true);
    const double *m = state.getCTM();
    const QTransform pageTransform(m[0], m[1], m[2], m[3], m[4], m[5]);
    const std::optional<PlacedImage> placed = imageAloneOnThePage(first, state);
    if (!placed)
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.fill(Qt::transparent);
    const QRectF within = QRectF(QPointF(0, 0), QSizeF(size))
                              .intersected(pageTransform.mapRect(
                                  QRectF(media.x1, media.y1, media.x2 - media.x1, media.y2 - media.y1)));
    const bool read = placed->liesOnThePixels(within)
                          ? decodeInto(image, *placed, state)
                          : drawInBands(image, *placed, pageTransform, media, state);
    return read ? image : QImage();
}

QSizeF firstPageSize(const QString &path, PDFReaderModule::Status *status)
{
    const std::lock_guard lock(gPopplerMutex);
    const FirstPage first = openFirstPage(path);
    *status = first.status;
    return first.page ? first.mediaSize() : QSizeF(0, 0);
}

QImage renderFirstPage(const QString &path, qint64 maximumBytes, PDFReaderModule::Route route,
                       PDFReaderModule::Route *taken, PDFReaderModule::Status *status, QString *reason)
{
    const std::lock_guard lock(gPopplerMutex);
    FirstPage first = openFirstPage(path);
    *status = first.status;
    *taken = PDFReaderModule::Route::Drawn;
    if (!first.page) {
        *reason = first.document ? QStringLiteral("the document has no pages")
                                 : QStringLiteral("the document could not be opened");
        return {};
    }
    const QSizeF points = first.mediaSize();
    const double width = std::ceil(points.width()), height = std::ceil(points.height());
    if (width < 1 || height < 1 || width * height * 4 > double(maximumBytes)) {
        *reason = QStringLiteral("the page is too large or empty (%1 by %2 points)")
                      .arg(points.width())
                      .arg(points.height());
        return {};
    }
    QImage image;
    if (route == PDFReaderModule::Route::Decoded) {
        image = decodedPage(first, points.toSize());
        if (!image.isNull())
            *taken = PDFReaderModule::Route::Decoded;
    }
    if (image.isNull())
        image = drawnPage(path, first, points.toSize());
    if (image.isNull()) {
        *reason = QStringLiteral("the page could not be rendered");
        return image;
    }
    // One pixel per point: the image keeps the page's size in points wherever it goes next.
    image.setDotsPerMeterX(qRound(72.0 / InchesPerMeter));
    image.setDotsPerMeterY(qRound(72.0 / InchesPerMeter));
    return image;
}

void setMessageHandler(void (*handler)(const QString &))
{
    const std::lock_guard lock(gPopplerMutex);
    gMessageHandler = handler;
    Poppler::setDebugErrorFunction(forwardPopplerMessage, QVariant());
    setErrorCallback(forwardCoreMessage);
}

const PDFReaderModule kModule{PDFReaderModule::Version, setMessageHandler, firstPageSize, renderFirstPage};

} // namespace

extern "C" Q_DECL_EXPORT const PDFReaderModule *corvex_pdf_reader_module()
{
    return &kModule;
}
