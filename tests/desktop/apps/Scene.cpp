#include "desktop/apps/Scene.h"

#include "desktop/Waiting.h"

#include <algorithm>
#include <iterator>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

using App = Scene::Application;

const QColor white(0xff, 0xff, 0xff);
const QColor black(0, 0, 0);
const QColor night(0x1d, 0x1f, 0x27);
const QColor moon(0xd5, 0xd8, 0xdf);
const QColor cream(0xfd, 0xfc, 0xf7);
const QColor slate(0x22, 0x2b, 0x38);

std::vector<Scene> inEditors()
{
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
    };
}

std::vector<Scene> inTerminals()
{
    return {
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
    };
}

std::vector<Scene> inBrowsers()
{
    return {
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
    };
}

std::vector<Scene> inDocuments()
{
    return {
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

} // namespace

std::vector<Scene> scenes()
{
    std::vector<Scene> all;
    for (const auto &some : {inEditors(), inTerminals(), inBrowsers(), inDocuments()}) {
        std::ranges::copy(some, std::back_inserter(all));
    }
    return all;
}

Scene sceneNamed(const QString &id)
{
    const std::vector<Scene> all = scenes();
    const auto found = std::ranges::find(all, id, &Scene::id);
    if (found == all.end()) {
        throw DesktopError(u"there is no scene "_s + id);
    }
    return *found;
}

} // namespace orvesa::desktop
