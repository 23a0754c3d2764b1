#pragma once

// The general pasteboard: what the user copies and pastes.
//
// Main thread. Reading suspends, since another program has to hand its contents over, and every wait has a bound.
// Writing and counting answer at once.

#include <QCoroTask>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace orvesa {

struct PasteboardData {
    QByteArray bytes;
    /// The desktop's own name for how the bytes are laid out; empty for the type's usual form. What was read with a
    /// form is given out again in exactly that form.
    QString form;

    bool operator==(const PasteboardData &) const = default;
};

struct PasteboardEntry {
    QString type;
    PasteboardData data;

    bool operator==(const PasteboardEntry &) const = default;
};

/// One pasteboard item: its data by type, in the order in which its owner offers them. No type occurs twice.
using PasteboardItem = std::vector<PasteboardEntry>;

/// The answer for one type of one item.
struct PasteboardReading {
    enum class Outcome {
        data,
        none,        ///< there is no data of that type
        unreachable, ///< whoever has the data did not hand it over in time
    };

    Outcome outcome = Outcome::none;
    PasteboardData data;
};

/// The type of plain text, UTF-8.
inline constexpr auto pasteboardPlainText = "text/plain;charset=utf-8";

class PasteboardPort {
public:
    virtual ~PasteboardPort() = default;

    /// A number that changes whenever the contents do.
    [[nodiscard]] virtual qint64 changeCount() = 0;
    /// The types of every item, in order; nothing when they cannot be had, because whoever has the contents does not
    /// answer or changes of them would go unseen. No items are an answer: there is nothing on it.
    [[nodiscard]] virtual QCoro::Task<std::optional<std::vector<QStringList>>> itemTypes() = 0;
    /// The data of one type of the item with this index.
    [[nodiscard]] virtual QCoro::Task<PasteboardReading> data(std::size_t item, QString type) = 0;
    /// The contents as plain text, if they have any.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> string() = 0;

    /// Takes the contents away. A write() right after it replaces them in one step.
    virtual void clear() = 0;
    /// Whether the items were taken over.
    virtual bool write(const std::vector<PasteboardItem> &items) = 0;
};

} // namespace orvesa
