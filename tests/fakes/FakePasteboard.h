#pragma once

// A pasteboard in memory that remembers what was done to it, and that other programs, as a test plays them, write to.
// Its reads can be held back. Main thread.

#include "Platform/PasteboardPort.h"
#include "fakes/Gate.h"

#include <functional>
#include <optional>
#include <set>
#include <utility>

namespace orvesa {

class FakePasteboard final : public PasteboardPort {
public:
    [[nodiscard]] qint64 changeCount() override { return m_changeCount; }
    [[nodiscard]] QCoro::Task<std::optional<std::vector<QStringList>>> itemTypes() override;
    [[nodiscard]] QCoro::Task<PasteboardReading> data(std::size_t item, QString type) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override;
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;

    /// What another program copies.
    void copyFromOutside(std::vector<PasteboardItem> items);
    /// The same with plain text alone.
    void copyFromOutside(const QString &text);
    /// The item also offers a type for which it has no data.
    void offerWithoutData(std::size_t item, const QString &type);
    /// The item names one of its types twice.
    void offerTwice(std::size_t item, const QString &type);
    /// Other bytes for a type, without a word to anybody.
    void replaceData(std::size_t item, const QString &type, const QByteArray &bytes);
    /// Whoever has the contents answers no more.
    void freezeOwner() { m_isFrozen = true; }
    /// Reading this type takes for ever.
    void freezeType(const QString &type) { m_frozenTypes.insert(type); }
    /// Called at each reading of a type.
    void setReadHandler(std::function<void(const QString &type)> handler);
    /// Every later write() is refused and changes nothing.
    void refuseWrites() { m_acceptsWrites = false; }

    [[nodiscard]] const std::vector<PasteboardItem> &items() const { return m_items; }
    /// The plain text of the first item that has one.
    [[nodiscard]] std::optional<QString> text() const;
    [[nodiscard]] int clears() const { return m_clears; }
    [[nodiscard]] int writes() const { return m_writes; }
    /// How often types were asked for.
    [[nodiscard]] int snapshots() const { return m_snapshots; }
    /// While it is closed, string() waits at it.
    [[nodiscard]] Gate &gate() { return m_gate; }

private:
    std::vector<PasteboardItem> m_items;
    std::vector<std::pair<std::size_t, QString>> m_further;
    std::set<QString> m_frozenTypes;
    std::function<void(const QString &)> m_readHandler;
    Gate m_gate;
    qint64 m_changeCount = 1;
    int m_clears = 0;
    int m_writes = 0;
    int m_snapshots = 0;
    bool m_isFrozen = false;
    bool m_acceptsWrites = true;
};

} // namespace orvesa
