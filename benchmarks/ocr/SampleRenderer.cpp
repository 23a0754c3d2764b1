#include "ocr/SampleRenderer.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace orvesa::benchmark {

using namespace Qt::StringLiterals;

namespace {

struct Look {
    QFont font;
    QColor paper;
    QColor ink;
    QColor accent;
    double scale = 1;
};

QStringList familiesFor(const SampleText &text)
{
    if (text.kind == "code"_L1 || text.kind == "term"_L1) {
        return {u"DejaVu Sans Mono"_s, u"Liberation Mono"_s, u"Hack"_s};
    }
    if (text.language.endsWith("ja"_L1)) {
        return {u"Noto Sans CJK JP"_s, u"IPAGothic"_s, u"VL Gothic"_s, u"Noto Serif CJK JP"_s, u"IPAPMincho"_s};
    }
    if (text.language.endsWith("zh"_L1)) {
        return {u"Noto Sans CJK TC"_s, u"WenQuanYi Micro Hei"_s, u"Noto Serif CJK TC"_s, u"AR PL UMing TW"_s,
                u"AR PL UKai TW"_s};
    }
    return {u"DejaVu Sans"_s, u"Liberation Sans"_s,  u"Noto Serif"_s,
            u"Open Sans"_s,   u"Liberation Serif"_s, u"Cantarell"_s};
}

Look lookFor(const SampleText &text, int variant)
{
    static constexpr std::array sizes{14, 12, 16, 13, 18, 15, 11, 20};
    static constexpr std::array scales{1.0, 2.0, 1.0, 1.5};
    struct Colors {
        QRgb paper, ink, accent;
    };
    static constexpr std::array<Colors, 6> colors{{{0xffffff, 0x1c1c1e, 0x3478f6},
                                                   {0x1e1f26, 0xe6e6ec, 0x7b72f7},
                                                   {0xf4f1ea, 0x3a322a, 0xb5512c},
                                                   {0x0b2545, 0xdfe8f5, 0x2a9d8f},
                                                   {0xe9ecef, 0x6c757d, 0x198754},
                                                   {0x2b2b2b, 0x9a9a9a, 0xd97706}}};
    const QStringList families = familiesFor(text);
    const auto pick = [variant](std::size_t count, int factor) {
        return static_cast<std::size_t>(variant * factor + variant / 3) % count;
    };
    Look look;
    look.scale = text.kind == "vertical"_L1 ? 1.0 : scales[pick(scales.size(), 1)];
    int pixels = sizes[pick(sizes.size(), 3)];
    const bool isWide = !text.language.startsWith("en"_L1);
    pixels = std::max(pixels, isWide ? 12 : 11);
    if (text.kind == "vertical"_L1 || text.kind == "photo"_L1) {
        pixels += 8;
    }
    const int dense = static_cast<int>(std::lround(pixels * look.scale));
    look.font = QFont(families.at(static_cast<qsizetype>(pick(static_cast<std::size_t>(families.size()), 2))));
    look.font.setPixelSize(dense);
    look.font.setHintingPreference(variant % 2 == 0 ? QFont::PreferFullHinting : QFont::PreferNoHinting);
    if (variant % 11 == 7 && look.scale < 1.1 && dense >= 12) {
        look.font.setStyleStrategy(QFont::NoAntialias);
    }
    const Colors &chosen = colors[pick(colors.size(), 5)];
    look.paper = QColor::fromRgb(chosen.paper);
    look.ink = QColor::fromRgb(chosen.ink);
    look.accent = QColor::fromRgb(chosen.accent);
    return look;
}

/// A canvas with everything that the kinds of pictures share.
class Page final {
public:
    explicit Page(const Look &look)
        : m_look(look), m_metrics(look.font), m_image(4000, 2400, QImage::Format_RGB32), m_painter(&m_image),
          m_lineHeight(std::ceil(m_metrics.height() * 1.2)), m_margin(std::ceil(m_metrics.height() * 0.7))
    {
        m_image.fill(look.paper);
        m_painter.setFont(look.font);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_bottom = m_margin;
    }

    [[nodiscard]] double width(const QString &text) const { return m_metrics.horizontalAdvance(text); }
    [[nodiscard]] double em() const { return m_look.font.pixelSize(); }
    [[nodiscard]] double lineHeight() const { return m_lineHeight; }
    [[nodiscard]] double margin() const { return m_margin; }
    [[nodiscard]] double bottom() const { return m_bottom; }
    QPainter &painter() { return m_painter; }

    /// Text whose line begins at `x` and whose top is at `y`.
    void write(double x, double y, const QString &text, const QColor &color)
    {
        m_painter.setPen(color);
        m_painter.drawText(QPointF(std::round(x), std::round(y + m_metrics.ascent())), text);
        extend(x + width(text), y + m_metrics.height());
    }

    void extend(double right, double bottom)
    {
        m_right = std::max(m_right, right);
        m_bottom = std::max(m_bottom, bottom);
    }

    QImage finished()
    {
        m_painter.end();
        return m_image.copy(0, 0, static_cast<int>(std::ceil(m_right + m_margin)),
                            static_cast<int>(std::ceil(m_bottom + m_margin)));
    }

private:
    const Look &m_look;
    QFontMetricsF m_metrics;
    QImage m_image;
    QPainter m_painter;
    double m_lineHeight;
    double m_margin;
    double m_right = 0;
    double m_bottom = 0;
};

void drawLines(Page &page, const Look &look, const QStringList &lines)
{
    double y = page.margin();
    for (const QString &line : lines) {
        page.write(page.margin(), y, line, look.ink);
        y += page.lineHeight();
    }
}

void drawColumns(Page &page, const Look &look, const QStringList &lines, double gap, bool ruled)
{
    std::vector<double> widths;
    for (const QString &line : lines) {
        const QStringList cells = line.split(u'|');
        widths.resize(std::max(widths.size(), static_cast<std::size_t>(cells.size())));
        for (qsizetype column = 0; column < cells.size(); ++column) {
            double &width = widths[static_cast<std::size_t>(column)];
            width = std::max(width, page.width(cells[column]));
        }
    }
    double y = page.margin();
    for (const QString &line : lines) {
        double x = page.margin();
        const QStringList cells = line.split(u'|');
        for (qsizetype column = 0; column < cells.size(); ++column) {
            page.write(x, y, cells[column], look.ink);
            x += widths[static_cast<std::size_t>(column)] + gap;
        }
        y += page.lineHeight();
        if (ruled) {
            page.painter().fillRect(QRectF(page.margin(), y, x - page.margin() - gap, 1), look.accent);
            page.extend(x - gap, y + 1);
            y += 4;
        }
    }
}

void drawDialog(Page &page, const Look &look, const QStringList &lines)
{
    double y = page.margin();
    for (qsizetype index = 0; index + 1 < lines.size(); ++index) {
        page.write(page.margin(), y, lines[index], look.ink);
        y += page.lineHeight() * 1.5;
    }
    double x = page.margin();
    const QStringList buttons = lines.last().split(u'|');
    for (qsizetype index = 0; index < buttons.size(); ++index) {
        const bool isDefault = index + 1 == buttons.size();
        const QRectF frame(x, y, page.width(buttons[index]) + 2 * page.em(), page.lineHeight() + page.em() * 0.6);
        page.painter().setPen(isDefault ? QPen(Qt::NoPen) : QPen(look.accent));
        page.painter().setBrush(isDefault ? QBrush(look.accent) : QBrush(Qt::NoBrush));
        page.painter().drawRoundedRect(frame, 5, 5);
        page.extend(frame.right(), frame.bottom());
        page.write(x + page.em(), y + page.em() * 0.3, buttons[index], isDefault ? QColor(Qt::white) : look.ink);
        x = frame.right() + page.em();
    }
}

void drawVertical(Page &page, const Look &look, const QStringList &lines, bool marksAtCorner)
{
    const double step = page.em() * 1.05;
    double x = page.margin() + page.em() * 1.7 * static_cast<double>(lines.size() - 1);
    for (const QString &line : lines) {
        double y = page.margin();
        for (const QChar character : line) {
            const bool isSentenceMark = marksAtCorner && u"、。，"_s.contains(character);
            const double shift = isSentenceMark ? page.em() * 0.6 : 0;
            page.write(x + shift, y - shift, QString(character), look.ink);
            y += step;
        }
        x -= page.em() * 1.7;
    }
}

/// A hand-held photograph of the page: uneven light, a small turn, blur, noise, compression.
QImage photographed(const QImage &page, int variant)
{
    QRandomGenerator random(static_cast<quint32>(1'000 + variant));
    QImage turned(page.size(), QImage::Format_RGB32);
    turned.fill(page.pixel(0, 0));
    QPainter painter(&turned);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(page.width() / 2.0, page.height() / 2.0);
    painter.rotate(variant % 2 == 0 ? 0.5 : -0.4);
    painter.translate(-page.width() / 2.0, -page.height() / 2.0);
    painter.drawImage(0, 0, page);
    painter.end();
    const QSize small(turned.width() * 4 / 5, turned.height() * 4 / 5);
    QImage blurred = turned.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .scaled(turned.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < blurred.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(blurred.scanLine(y));
        for (int x = 0; x < blurred.width(); ++x) {
            const double light = 0.78 + 0.22 * x / blurred.width() - 0.1 * y / blurred.height();
            const int noise = random.bounded(25) - 12;
            const auto lit = [&](int value) { return std::clamp(static_cast<int>(value * light) + noise, 0, 255); };
            line[x] = qRgb(lit(qRed(line[x])), lit(qGreen(line[x])), lit(qBlue(line[x])));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    constexpr int quality = 80;
    blurred.save(&buffer, "jpg", quality);
    return QImage::fromData(bytes, "jpg");
}

QString referenceOf(const SampleText &text)
{
    if (text.kind == "2col"_L1) {
        QStringList left;
        QStringList right;
        for (const QString &line : text.lines) {
            left.append(line.section(u'|', 0, 0));
            right.append(line.section(u'|', 1, 1));
        }
        return (left + right).join(u'\n');
    }
    const bool hasCells = text.kind == "table"_L1 || text.kind == "dialog"_L1;
    QString reference = text.lines.join(u'\n');
    return hasCells ? reference.replace(u'|', u' ') : reference;
}

} // namespace

RenderedSample renderSample(const SampleText &text, int variant)
{
    const Look look = lookFor(text, variant);
    Page page(look);
    if (text.kind == "table"_L1) {
        drawColumns(page, look, text.lines, 2 * page.em(), variant % 2 == 0);
    } else if (text.kind == "2col"_L1) {
        drawColumns(page, look, text.lines, 3 * page.em(), false);
    } else if (text.kind == "dialog"_L1) {
        drawDialog(page, look, text.lines);
    } else if (text.kind == "vertical"_L1) {
        drawVertical(page, look, text.lines, text.language == "vja"_L1);
    } else {
        drawLines(page, look, text.lines);
    }
    QImage image = page.finished();
    if (text.kind == "photo"_L1) {
        image = photographed(image, variant);
    }
    return {.image = image,
            .reference = referenceOf(text),
            .font = look.font.family(),
            .pixels = static_cast<int>(std::lround(look.font.pixelSize() / look.scale)),
            .scale = look.scale,
            .dark = look.paper.lightness() < look.ink.lightness()};
}

} // namespace orvesa::benchmark
