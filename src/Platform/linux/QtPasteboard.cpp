#include "Platform/linux/QtPasteboard.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace orvesa {

namespace {

QClipboard *clipboard()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr ? nullptr
                                                                                    : QGuiApplication::clipboard();
}

} // namespace

QCoro::Task<std::optional<std::vector<QStringList>>> QtPasteboard::itemTypes()
{
    co_return std::nullopt;
}

QCoro::Task<PasteboardReading> QtPasteboard::data(std::size_t, QString)
{
    co_return PasteboardReading{};
}

QCoro::Task<std::optional<QString>> QtPasteboard::string()
{
    co_return std::nullopt;
}

void QtPasteboard::clear()
{
    if (QClipboard *const general = clipboard()) {
        general->clear(QClipboard::Clipboard);
    }
}

bool QtPasteboard::write(const std::vector<PasteboardItem> &items)
{
    QClipboard *const general = clipboard();
    if (general == nullptr || items.empty()) {
        return false;
    }
    // A selection holds one item; of several, the first is the one that pastes.
    auto content = std::make_unique<QMimeData>();
    for (const auto &[type, data] : items.front()) {
        const QByteArray &bytes = data.bytes;
        if (type == QLatin1StringView(pasteboardPlainText)) {
            content->setText(QString::fromUtf8(bytes)); // offered under all the names that text goes by
        } else {
            content->setData(type, bytes);
        }
    }
    general->setMimeData(content.release(), QClipboard::Clipboard);
    return general->ownsClipboard();
}

} // namespace orvesa
