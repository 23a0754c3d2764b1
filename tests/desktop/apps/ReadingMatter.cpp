#include "desktop/apps/ReadingMatter.h"

#include <QImage>
#include <QTimer>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 60s;

/// The longest stretch of lines of the picture that are mostly of the colour.
std::pair<int, int> linesOf(const QImage &picture, QRgb color, Qt::Orientation orientation)
{
    const bool isRow = orientation == Qt::Horizontal;
    const int count = isRow ? picture.height() : picture.width();
    const int length = isRow ? picture.width() : picture.height();
    std::pair<int, int> longest{0, -1};
    int first = 0;
    for (int line = 0; line < count; ++line) {
        int same = 0;
        for (int place = 0; place < length; ++place) {
            const QRgb pixel = isRow ? picture.pixel(place, line) : picture.pixel(line, place);
            same += (pixel | 0xff000000U) == color ? 1 : 0;
        }
        if (2 * same <= length) {
            first = line + 1;
        } else if (line - first > longest.second - longest.first) {
            longest = {first, line};
        }
    }
    return longest;
}

/// Whatever is not of the colour.
QRect inked(const QImage &picture, const QRect &area, QRgb color)
{
    QRect box;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if ((picture.pixel(x, y) | 0xff000000U) != color) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

} // namespace

QString ReadingMatter::writeScript(const Scene &scene) const
{
    return m_desktop.folders().write(u"home/%1.sh"_s.arg(scene.id),
                                     "printf '\\033[2J\\033[H\\033[?25l'\ncat <<'TEXT'\n" +
                                         scene.lines.join(u'\n').toUtf8() + "\nTEXT\nexec cat\n");
}

QString ReadingMatter::writePage(const Scene &scene) const
{
    return m_desktop.folders().write(
        u"home/%1.html"_s.arg(scene.id),
        "<!DOCTYPE html><meta charset=utf-8><title>Page</title><body style=\"margin:60px;background:" +
            scene.background.name().toUtf8() + ";color:" + scene.ink.name().toUtf8() + ';' + scene.style.toUtf8() +
            "\"><p>" + scene.lines.join(u'\n').toHtmlEscaped().replace(u'\n', u"<br>"_s).toUtf8() + "</p></body>");
}

/// A page of its own colour with the lines on it, in the format's own words.
QString ReadingMatter::writeDocument(const Scene &scene) const
{
    QByteArray content = QByteArray::number(scene.background.redF(), 'f', 4) + ' ' +
                         QByteArray::number(scene.background.greenF(), 'f', 4) + ' ' +
                         QByteArray::number(scene.background.blueF(), 'f', 4) +
                         " rg 0 0 400 300 re f 0 g BT /F 14 Tf 20 TL 40 240 Td\n";
    for (const QString &line : scene.lines) {
        QByteArray text = line.toLatin1();
        text.replace('\\', "\\\\").replace('(', "\\(").replace(')', "\\)");
        content += '(' + text + ") Tj T*\n";
    }
    content += "ET\n";
    const QList<QByteArray> objects{
        "<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 400 300]/Contents 4 0 R/Resources<</Font<</F 5 0 R>>>>>>",
        "<</Length " + QByteArray::number(content.size()) + ">>stream\n" + content + "endstream",
        "<</Type/Font/Subtype/Type1/BaseFont/Times-Roman/Encoding/WinAnsiEncoding>>"};
    QByteArray file = "%PDF-1.4\n";
    QByteArray places;
    for (qsizetype number = 0; number < objects.size(); ++number) {
        places += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(number + 1) + " 0 obj" + objects[number] + "endobj\n";
    }
    const QByteArray start = QByteArray::number(file.size());
    file += "xref\n0 6\n0000000000 65535 f \n" + places + "trailer<</Size 6/Root 1 0 R>>\nstartxref\n" + start +
            "\n%%EOF\n";
    return m_desktop.folders().write(u"home/%1.pdf"_s.arg(scene.id), file);
}

ReadingMatter::Command ReadingMatter::commandFor(const Scene &scene) const
{
    const auto textFile = [&](const QString &suffix) {
        return m_desktop.folders().write(u"home/%1.%2"_s.arg(scene.id, suffix),
                                         scene.lines.join(u'\n').toUtf8() + '\n');
    };
    const QString profile = m_desktop.folders().home() + u"/profile%1"_s.arg(m_count);
    switch (scene.application) {
    case Scene::Application::mousepad:
        return {u"mousepad"_s, {u"--disable-server"_s, textFile(u"txt"_s)}, u"Mousepad"_s};
    case Scene::Application::featherpad:
        return {u"featherpad"_s, {u"--standalone"_s, textFile(u"cpp"_s)}, u"featherpad"_s};
    case Scene::Application::xterm:
        return {u"xterm"_s,
                {u"-bg"_s, scene.background.name(), u"-fg"_s, scene.ink.name(), u"-fa"_s, scene.style, u"-fs"_s,
                 u"11"_s, u"-geometry"_s, u"60x14+100+100"_s, u"-e"_s, u"sh"_s, writeScript(scene)},
                u"XTerm"_s};
    case Scene::Application::terminal:
        return {u"xfce4-terminal"_s,
                {u"--disable-server"_s, u"--hide-menubar"_s, u"--hide-toolbar"_s, u"--hide-scrollbar"_s,
                 u"--color-bg="_s + scene.background.name(), u"--color-text="_s + scene.ink.name(),
                 u"--font="_s + scene.style, u"-x"_s, u"sh"_s, writeScript(scene)},
                u"Xfce4-terminal"_s};
    case Scene::Application::chromium:
        return {u"chromium"_s,
                {u"--no-sandbox"_s, u"--no-first-run"_s, u"--no-default-browser-check"_s, u"--disable-gpu"_s,
                 u"--password-store=basic"_s, u"--disable-background-networking"_s, u"--disable-component-update"_s,
                 u"--user-data-dir="_s + profile, u"--window-size=1000,700"_s, u"file://"_s + writePage(scene)},
                u"Chromium"_s};
    case Scene::Application::firefox:
        m_desktop.folders().write(u"home/profile%1/user.js"_s.arg(m_count),
                                  "user_pref('browser.aboutwelcome.enabled', false);\n"
                                  "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
                                  "user_pref('browser.shell.checkDefaultBrowser', false);\n"
                                  "user_pref('termsofuse.bypassNotification', true);\n"
                                  "user_pref('app.normandy.enabled', false);\n");
        return {u"firefox-esr"_s,
                {u"--no-remote"_s, u"--profile"_s, profile, u"file://"_s + writePage(scene)},
                u"firefox-esr"_s};
    case Scene::Application::evince:
        return {u"evince"_s, {writeDocument(scene)}, u"Evince"_s};
    }
    throw DesktopError(u"there is no such application"_s);
}

QRect ReadingMatter::textArea(const Scene &scene, xcb_window_t window) const
{
    const QRect place = m_desktop.windows().geometry(window);
    const QImage picture = m_desktop.windows().picture(place);
    if (picture.isNull()) {
        return {};
    }
    const QRgb color = scene.background.rgb();
    const auto [top, bottom] = linesOf(picture, color, Qt::Horizontal);
    if (bottom < top) {
        return {};
    }
    const auto [left, right] = linesOf(picture.copy(0, top, picture.width(), bottom - top + 1), color, Qt::Vertical);
    // The frame's antialiasing and shadow belong to nobody.
    constexpr int frame = 1;
    const QRect page = QRect(QPoint(left, top), QPoint(right, bottom)).adjusted(frame, frame, -frame, -frame);
    constexpr int margin = 8;
    return inked(picture, page, color)
        .adjusted(-margin, -margin, margin, margin)
        .intersected(page)
        .translated(place.topLeft());
}

QRect ReadingMatter::show(const Scene &scene)
{
    ++m_count;
    const Command command = commandFor(scene);
    m_desktop.launch(command.program, command.arguments);
    const xcb_window_t window = m_desktop.windows().awaitWindow({.className = command.windowClass}, startBound);
    // Nobody announces that everything is painted: it is when nothing changes any more.
    QTimer look;
    look.start(200ms);
    QImage last;
    QRect area;
    int same = 0;
    waitUntil(
        [&] {
            area = textArea(scene, window);
            constexpr int leastWidth = 150;
            const QImage now = area.width() < leastWidth ? QImage() : m_desktop.windows().picture(area);
            same = !now.isNull() && now == last ? same + 1 : 0;
            last = now;
            constexpr int enough = 2; // within half a blink of a cursor
            return same >= enough;
        },
        scene.id + u" on the screen"_s, startBound);
    return area;
}

} // namespace orvesa::desktop
