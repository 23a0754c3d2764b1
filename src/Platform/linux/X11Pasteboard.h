#pragma once

// The CLIPBOARD selection of the X server as a pasteboard of one item.
//
// Main thread. PRIMARY is never touched. Every target that the owner offers is a type by its name, in the owner's
// order; its bytes keep the form that they were given in, and are given out again in just that form. An owner that has
// stopped costs a second and leaves everything as it is. While the server does not answer, or when it cannot tell of
// changes, nothing is known of the contents; what is written then is there as soon as it answers.

#include "Platform/PasteboardPort.h"
#include "Platform/linux/X11SelectionOwner.h"
#include "Platform/linux/X11SelectionReader.h"

#include <QDeadlineTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace orvesa {

class X11Pasteboard final : public PasteboardPort {
public:
    /// How long reading one set of contents may take in all.
    static constexpr std::chrono::milliseconds contentsBound{4000};
    /// Contents beyond this are not read.
    static constexpr qsizetype mostBytes = qsizetype{256} * 1024 * 1024;

    /// The connection must outlive this object. It must be one on which nobody else watches the selection.
    explicit X11Pasteboard(X11Connection &connection);
    ~X11Pasteboard() override;
    Q_DISABLE_COPY_MOVE(X11Pasteboard)

    [[nodiscard]] qint64 changeCount() override;
    [[nodiscard]] QCoro::Task<std::optional<std::vector<QStringList>>> itemTypes() override;
    [[nodiscard]] QCoro::Task<PasteboardReading> data(std::size_t item, QString type) override;
    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override;
    void clear() override;
    bool write(const std::vector<PasteboardItem> &items) override;

private:
    /// Begins to count the changes. False while the server does not answer, or when it cannot tell.
    bool prepare();
    [[nodiscard]] QCoro::Task<std::optional<std::vector<QStringList>>> offeredTypes();
    [[nodiscard]] xcb_atom_t clipboard() { return m_connection.atom("CLIPBOARD"); }
    void note(const xcb_generic_event_t &event);
    [[nodiscard]] bool isChange(const xcb_generic_event_t &event) const;
    [[nodiscard]] QCoro::Task<bool> ownerAnswers();
    void clearNow();
    void writeLater(const PasteboardItem &item);
    [[nodiscard]] X11SelectionContents contents(const PasteboardItem &item);
    void addText(X11SelectionContents &contents, const QByteArray &utf8);

    X11Connection &m_connection;
    X11SelectionReader m_reader;
    X11SelectionOwner m_owner;
    X11Connection::HandlerToken m_token = 0;
    quint8 m_fixesEvent = 0;
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    qint64 m_changes = 0;
    QDeadlineTimer m_deadline; ///< of the reading that itemTypes() began
    qsizetype m_bytesLeft = 0;
    bool m_clearPending = false;
    std::optional<PasteboardItem> m_unwritten; ///< waits for the server
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace orvesa
