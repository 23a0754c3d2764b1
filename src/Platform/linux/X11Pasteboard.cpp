#include "Platform/linux/X11Pasteboard.h"

#include "Platform/linux/X11Event.h"

#include <QMetaObject>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <xcb/xfixes.h>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

using Outcome = X11SelectionConversion::Outcome;
using Kind = X11SelectionContents::Kind;

constexpr qsizetype bytesPerAtom = 4;
constexpr qsizetype mostTargets = 4096;
constexpr quint8 byteFormat = 8;
constexpr auto secretMark = "x-kde-passwordManagerHint";

/// The form of the targets that an owner answers from what it knows about itself.
QString ownForm()
{
    return u"owner"_s;
}

struct OwnTarget {
    std::string_view name;
    Kind kind;
};
constexpr std::array ownTargets{OwnTarget{"TARGETS", Kind::targets}, OwnTarget{"TIMESTAMP", Kind::timestamp},
                                OwnTarget{"MULTIPLE", Kind::multiple}, OwnTarget{"SAVE_TARGETS", Kind::handOver}};
/// Asking for these changes something at the owner.
constexpr std::array<std::string_view, 3> targetsWithEffects{"DELETE", "INSERT_SELECTION", "INSERT_PROPERTY"};
constexpr std::array<std::string_view, 3> textTargets{"UTF8_STRING", "text/plain;charset=utf-8", "STRING"};
/// What reading and writing need whatever is on the clipboard. A name that is missing in the middle of either would
/// cost what it stands for.
constexpr std::array<std::string_view, 12> basicNames{
    "CLIPBOARD",        "TARGETS",     "TIMESTAMP", "MULTIPLE", "SAVE_TARGETS", "INCR",
    "ORVESA_SELECTION", "UTF8_STRING", "TEXT",      "STRING",   "text/plain",   "text/plain;charset=utf-8"};

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// "TYPE/format".
QString formOf(const QByteArray &typeName, quint8 format)
{
    return QString::fromLatin1(typeName) + u'/' + QString::number(format);
}

struct Form {
    QByteArray typeName;
    quint8 format = byteFormat;
};

std::optional<Form> parsed(const QString &form)
{
    const qsizetype slash = form.lastIndexOf(u'/');
    const int format = form.sliced(slash + 1).toInt();
    if (slash <= 0 || (format != 8 && format != 16 && format != 32)) {
        return std::nullopt;
    }
    return Form{form.first(slash).toLatin1(), static_cast<quint8>(format)};
}

bool isLatin1(const QString &text)
{
    return std::ranges::all_of(text, [](QChar character) { return character.unicode() < 0x100; });
}

} // namespace

X11Pasteboard::X11Pasteboard(X11Connection &connection) : m_connection(connection), m_reader(connection) {}

X11Pasteboard::~X11Pasteboard()
{
    if (m_clearPending) {
        clearNow();
    }
    m_connection.removeEventHandler(m_token);
}

bool X11Pasteboard::prepare()
{
    if (!m_connection.isValid()) {
        return false;
    }
    if (m_token != 0) {
        return true;
    }
    if (!m_connection.learnAtoms(basicNames)) {
        return false;
    }
    xcb_connection_t *const raw = m_connection.connection();
    const xcb_query_extension_reply_t *const extension = m_connection.extension(xcb_xfixes_id);
    if (extension == nullptr ||
        !m_connection.reply(xcb_xfixes_query_version_reply,
                            xcb_xfixes_query_version(raw, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION))) {
        return false;
    }
    m_clipboard = clipboard();
    m_fixesEvent = static_cast<quint8>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(raw, m_connection.root(), m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    m_token = m_connection.addEventHandler([this](const xcb_generic_event_t &event) { note(event); });
    m_connection.settle();
    return true;
}

bool X11Pasteboard::isChange(const xcb_generic_event_t &event) const
{
    return m_fixesEvent != 0 && eventTypeOf(event) == m_fixesEvent &&
           reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event).selection == m_clipboard;
}

void X11Pasteboard::note(const xcb_generic_event_t &event)
{
    if (isChange(event)) {
        ++m_changes;
    }
}

qint64 X11Pasteboard::changeCount()
{
    if (prepare()) {
        // Also those that the event loop has not come to yet.
        for (const auto &event :
             m_connection.takeEvents([this](const xcb_generic_event_t &candidate) { return isChange(candidate); })) {
            note(*event);
        }
    }
    return m_changes;
}

QCoro::Task<std::optional<std::vector<QStringList>>> X11Pasteboard::itemTypes()
{
    if (!prepare()) {
        co_return std::nullopt;
    }
    const quint64 lateBefore = m_connection.lateReplies();
    auto items = co_await offeredTypes();
    if (m_connection.lateReplies() != lateBefore || !m_connection.isValid()) {
        items.reset(); // some of it is missing, and nobody knows what
    }
    co_return items;
}

QCoro::Task<std::optional<std::vector<QStringList>>> X11Pasteboard::offeredTypes()
{
    std::vector<QStringList> items;
    if (m_reader.owner(clipboard()) == XCB_WINDOW_NONE) {
        co_return items;
    }
    m_deadline = QDeadlineTimer(contentsBound, Qt::PreciseTimer);
    m_bytesLeft = mostBytes;
    const auto answer =
        co_await m_reader.convert(clipboard(), m_connection.atom("TARGETS"), mostTargets * bytesPerAtom, m_deadline);
    if (answer.outcome == Outcome::refused) {
        if (m_reader.owner(clipboard()) == XCB_WINDOW_NONE) {
            co_return items; // it has gone meanwhile
        }
        // Owners have to know this question. One that does not has text, if anything.
        items.push_back({u"UTF8_STRING"_s, u"STRING"_s});
        co_return items;
    }
    if (answer.outcome != Outcome::data) {
        co_return std::nullopt;
    }
    const auto *const atoms = reinterpret_cast<const xcb_atom_t *>(answer.data.bytes.constData());
    const std::vector<xcb_atom_t> targets(atoms, atoms + answer.data.bytes.size() / bytesPerAtom);
    QStringList types;
    for (const QByteArray &name : m_connection.atomNames(targets)) {
        if (!name.isEmpty()) {
            types.append(QString::fromLatin1(name));
        }
    }
    items.push_back(types);
    co_return items;
}

QCoro::Task<PasteboardReading> X11Pasteboard::data(std::size_t item, QString type)
{
    PasteboardReading reading;
    const QByteArray name = type.toLatin1();
    if (!prepare()) {
        reading.outcome = PasteboardReading::Outcome::unreachable;
        co_return reading;
    }
    if (item != 0 || std::ranges::count(targetsWithEffects, view(name)) != 0) {
        co_return reading;
    }
    if (std::ranges::count(ownTargets, view(name), &OwnTarget::name) != 0) {
        reading.outcome = PasteboardReading::Outcome::data;
        reading.data.form = ownForm();
        co_return reading;
    }
    const quint64 lateBefore = m_connection.lateReplies();
    const auto answer = co_await m_reader.convert(clipboard(), m_connection.atom(view(name)), m_bytesLeft, m_deadline);
    if (answer.outcome == Outcome::data) {
        m_bytesLeft -= answer.data.bytes.size();
        reading.outcome = PasteboardReading::Outcome::data;
        reading.data.bytes = answer.data.bytes;
        const auto typeNames = m_connection.atomNames({answer.data.type});
        reading.data.form = formOf(typeNames.front(), answer.data.format == 0 ? byteFormat : answer.data.format);
    } else if (answer.outcome != Outcome::refused) {
        // Some owners never answer for one of their targets; as long as they answer at all, it is the target's fault.
        const bool isAlive = answer.outcome == Outcome::pending && co_await ownerAnswers();
        reading.outcome = isAlive ? PasteboardReading::Outcome::none : PasteboardReading::Outcome::unreachable;
    }
    if (m_connection.lateReplies() != lateBefore) {
        reading.outcome = PasteboardReading::Outcome::unreachable; // the server, whatever the owner says
    }
    co_return reading;
}

QCoro::Task<bool> X11Pasteboard::ownerAnswers()
{
    if (m_deadline.hasExpired()) {
        co_return false;
    }
    const auto answer =
        co_await m_reader.convert(clipboard(), m_connection.atom("TARGETS"), mostTargets * bytesPerAtom, m_deadline);
    co_return answer.outcome == Outcome::data || answer.outcome == Outcome::refused;
}

QCoro::Task<std::optional<QString>> X11Pasteboard::string()
{
    if (!prepare()) {
        co_return std::nullopt;
    }
    const QDeadlineTimer deadline(contentsBound, Qt::PreciseTimer);
    constexpr int mostAttempts = 3;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const qint64 before = changeCount();
        for (const std::string_view target : textTargets) {
            const auto answer = co_await m_reader.convert(clipboard(), m_connection.atom(target), mostBytes, deadline);
            if (answer.outcome == Outcome::data && answer.data.format == byteFormat) {
                QByteArray bytes = answer.data.bytes;
                while (bytes.endsWith('\0')) { // some owners count the end of their string as a part of it
                    bytes.chop(1);
                }
                co_return answer.data.type == XCB_ATOM_STRING ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
            }
            if (answer.outcome == Outcome::pending) {
                co_return std::nullopt;
            }
        }
        // Some programs let go of the selection first and take it again then; some managers take it over.
        if (changeCount() == before) {
            co_return std::nullopt;
        }
    }
    co_return std::nullopt;
}

void X11Pasteboard::clear()
{
    // Clipboard managers fill an empty clipboard again with what was on it last. So it is emptied only when nothing is
    // written right after.
    m_unwritten.reset();
    m_clearPending = true;
    QMetaObject::invokeMethod(
        &m_connection,
        [this, alive = std::weak_ptr<bool>(m_alive)] {
            if (!alive.expired() && m_clearPending) {
                clearNow();
            }
        },
        Qt::QueuedConnection);
}

void X11Pasteboard::clearNow()
{
    m_clearPending = false;
    if (clipboard() != XCB_ATOM_NONE) {
        xcb_set_selection_owner(m_connection.connection(), XCB_WINDOW_NONE, clipboard(), XCB_CURRENT_TIME);
        m_connection.settle();
    }
}

bool X11Pasteboard::write(const std::vector<PasteboardItem> &items)
{
    // A selection holds one item; of several, the first is the one that pastes.
    const bool wasCleared = std::exchange(m_clearPending, false);
    m_unwritten.reset();
    if (m_connection.isValid() && !items.empty()) {
        const quint64 lateBefore = m_connection.lateReplies();
        const bool areNamesKnown = m_connection.learnAtoms(basicNames);
        auto wanted = areNamesKnown ? contents(items.front()) : X11SelectionContents{};
        if (m_connection.lateReplies() != lateBefore) {
            writeLater(items.front());
            return true;
        }
        if (areNamesKnown && m_owner.own(std::move(wanted))) {
            return true;
        }
    }
    if (wasCleared) {
        clearNow();
    }
    return false;
}

void X11Pasteboard::writeLater(const PasteboardItem &item)
{
    // Without the names of its types nobody could paste it.
    m_unwritten = item;
    m_connection.whenServerAnswers([this, alive = std::weak_ptr<bool>(m_alive)] {
        if (!alive.expired() && m_unwritten) {
            write({*std::exchange(m_unwritten, std::nullopt)});
        }
    });
}

X11SelectionContents X11Pasteboard::contents(const PasteboardItem &item)
{
    X11SelectionContents result;
    const bool listsTargets = std::ranges::count(item, u"TARGETS"_s, &PasteboardEntry::type) != 0;
    if (!listsTargets) {
        for (const OwnTarget &own : ownTargets) {
            result.entries.push_back({m_connection.atom(own.name), own.kind, XCB_ATOM_NONE, byteFormat, {}});
        }
    }
    for (const auto &[type, data] : item) {
        const QByteArray name = type.toLatin1();
        const auto *const own = std::ranges::find(ownTargets, view(name), &OwnTarget::name);
        if (own != ownTargets.end()) {
            result.entries.push_back({m_connection.atom(own->name), own->kind, XCB_ATOM_NONE, byteFormat, {}});
        } else if (const auto form = parsed(data.form)) {
            result.entries.push_back({m_connection.atom(view(name)), Kind::data,
                                      m_connection.atom(view(form->typeName)), form->format, data.bytes});
        } else if (type == QLatin1StringView(pasteboardPlainText)) {
            addText(result, data.bytes);
        } else {
            const xcb_atom_t atom = m_connection.atom(view(name));
            result.entries.push_back({atom, Kind::data, atom, byteFormat, data.bytes});
        }
        if (name == secretMark && data.bytes == "secret") {
            result.secrecy = X11SelectionContents::Secrecy::secret;
        }
    }
    return result;
}

void X11Pasteboard::addText(X11SelectionContents &contents, const QByteArray &utf8)
{
    // Under all the names that programs ask for text by.
    const xcb_atom_t utf8String = m_connection.atom("UTF8_STRING");
    for (const std::string_view name : {std::string_view(pasteboardPlainText), std::string_view("text/plain")}) {
        const xcb_atom_t atom = m_connection.atom(name);
        contents.entries.push_back({atom, Kind::data, atom, byteFormat, utf8});
    }
    contents.entries.push_back({utf8String, Kind::data, utf8String, byteFormat, utf8});
    contents.entries.push_back({m_connection.atom("TEXT"), Kind::data, utf8String, byteFormat, utf8});
    if (const QString text = QString::fromUtf8(utf8); isLatin1(text)) {
        contents.entries.push_back({XCB_ATOM_STRING, Kind::data, XCB_ATOM_STRING, byteFormat, text.toLatin1()});
    }
}

} // namespace orvesa
