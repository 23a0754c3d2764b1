#include "desktop/apps/ReadingMatter.h"

#include <QImage>
#include <QTimer>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 60s;
const QColor white(0xff, 0xff, 0xff);
const QColor black(0, 0, 0);
const QColor night(0x1d, 0x1f, 0x27);
const QColor moon(0xd5, 0xd8, 0xdf);
const QColor cream(0xfd, 0xfc, 0xf7);
const QColor slate(0x22, 0x2b, 0x38);

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

std::vector<Scene> ReadingMatter::scenes()
{
    using App = Scene::Application;
    return {
        {u"sc01"_s,
         u"en"_s,
         u"para"_s,
         App::mousepad,
         white,
         black,
         {},
         {u"The night train leaves at 22:48 and arrives"_s, u"before breakfast. Please keep your ticket"_s,
          u"and show it to the conductor (car 14)."_s}},
        {u"sc02"_s,
         u"ja"_s,
         u"para"_s,
         App::mousepad,
         white,
         black,
         {},
         {u"夜行列車は午後十時に出発します。"_s, u"切符は降りるまでお持ちください。"_s}},
        {u"sc03"_s,
         u"zh"_s,
         u"para"_s,
         App::mousepad,
         white,
         black,
         {},
         {u"夜車晚上十點開車，"_s, u"請保留車票，下車時需要查驗。"_s}},
        {u"sc04"_s,
         u"en"_s,
         u"code"_s,
         App::featherpad,
         white,
         black,
         {},
         {u"double mean(const std::vector<double> &values)"_s, u"{"_s, u"    double sum = 0;"_s,
          u"    for (double value : values) {"_s, u"        sum += value;"_s, u"    }"_s,
          u"    return sum / values.size();"_s, u"}"_s}},
        {u"sc05"_s,
         u"en"_s,
         u"term"_s,
         App::terminal,
         night,
         moon,
         u"DejaVu Sans Mono 11"_s,
         {u"$ du -sh ~/pictures"_s, u"4.7G    /home/anna/pictures"_s, u"$ tail -2 build.log"_s,
          u"[ 98%] Built target viewer"_s, u"2 warnings, 0 errors"_s}},
        {u"sc06"_s,
         u"ja"_s,
         u"term"_s,
         App::terminal,
         night,
         moon,
         u"Noto Sans Mono CJK JP 12"_s,
         {u"警告：設定が見つかりません。"_s, u"既定の値を使用します。"_s}},
        {u"sc07"_s,
         u"en"_s,
         u"term"_s,
         App::xterm,
         white,
         black,
         u"Liberation Mono"_s,
         {u"ping statistics for 10.1.0.5:"_s, u"4 packets transmitted, 4 received"_s,
          u"0% packet loss, time 3004ms"_s}},
        {u"sc08"_s,
         u"en"_s,
         u"para"_s,
         App::chromium,
         cream,
         black,
         u"font:16px/1.5 'Liberation Serif'"_s,
         {u"The harbour froze in January 1929, and for"_s, u"eleven days people walked across to the"_s,
          u"islands. Shops sold “ice tickets” for charity."_s}},
        {u"sc09"_s,
         u"ja"_s,
         u"para"_s,
         App::chromium,
         cream,
         black,
         u"font:17px/1.6 'Noto Sans CJK JP'"_s,
         {u"港は一月に凍り、人々は十一日間"_s, u"歩いて島へ渡った。"_s}},
        {u"sc10"_s,
         u"zh"_s,
         u"para"_s,
         App::chromium,
         slate,
         moon,
         u"font:17px/1.6 'Noto Sans CJK TC'"_s,
         {u"港口在一月結冰，整整十一天，"_s, u"人們走路到對面的島上。"_s}},
        {u"sc11"_s,
         u"mixzh"_s,
         u"para"_s,
         App::firefox,
         cream,
         black,
         u"font:16px/1.6 'Noto Sans CJK TC'"_s,
         {u"請執行 npm install，然後開啟 index.html。"_s, u"若出現 Error 404，請檢查 URL 是否正確。"_s}},
        {u"sc12"_s,
         u"en"_s,
         u"para"_s,
         App::firefox,
         slate,
         moon,
         u"font:14px/1.5 'DejaVu Sans'"_s,
         {u"Signed in as anna@example.org"_s, u"Last backup: 3 hours ago (214 files)"_s,
          u"Storage: 11.2 GB of 15 GB used"_s}},
        {u"sc13"_s,
         u"en"_s,
         u"para"_s,
         App::evince,
         cream,
         black,
         {},
         {u"Article 7. The tenant shall give notice in"_s, u"writing at least 30 days in advance."_s,
          u"Keys are to be returned to the caretaker."_s}},
    };
}

Scene ReadingMatter::scene(const QString &id)
{
    const std::vector<Scene> all = scenes();
    const auto found = std::ranges::find(all, id, &Scene::id);
    if (found == all.end()) {
        throw DesktopError(u"there is no scene "_s + id);
    }
    return *found;
}

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
    m_process = &m_desktop.launch(command.program, command.arguments);
    m_window = m_desktop.windows().awaitWindow({.className = command.windowClass}, startBound);
    // Nobody announces that everything is painted: it is when nothing changes any more.
    QTimer look;
    look.start(200ms);
    QImage last;
    QRect area;
    int same = 0;
    waitUntil(
        [&] {
            area = textArea(scene, m_window);
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

void ReadingMatter::close()
{
    if (m_process != nullptr) {
        m_process->terminate();
        m_process = nullptr;
        waitUntil([this] { return !m_desktop.windows().isMapped(m_window); }, u"the application to end"_s);
    }
}

} // namespace orvesa::desktop
