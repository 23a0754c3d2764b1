#pragma once

// One object of a program as a screen reader sees it: a value that names it on the desktop's accessibility bus.
//
// Main thread. It must not outlive its AccessibleTree. What has gone in between gives empty values, never an error.

#include <QRect>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <vector>

namespace orvesa::desktop {

class AccessibleTree;

/// States by their AT-SPI numbers, those that tests ask for.
enum class AccessibleState {
    active = 1,
    checked = 4,
    editable = 7,
    enabled = 8,
    expanded = 10,
    focusable = 11,
    focused = 12,
    selected = 23,
    sensitive = 24,
    showing = 25,
    visible = 30,
    defunct = 6
};

class Accessible final {
public:
    Accessible() = default;
    Accessible(const AccessibleTree *tree, QString bus, QString path);

    [[nodiscard]] bool isNull() const { return m_tree == nullptr; }
    explicit operator bool() const { return !isNull(); }
    bool operator==(const Accessible &other) const { return m_bus == other.m_bus && m_path == other.m_path; }

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString description() const;
    [[nodiscard]] QString role() const; ///< as AT-SPI names it: "frame", "push button", "text", "label", "terminal"
    [[nodiscard]] bool has(AccessibleState state) const;
    [[nodiscard]] quint64 states() const;
    [[nodiscard]] QStringList interfaces() const;
    /// The content of its Text interface; empty when it has none.
    [[nodiscard]] QString text() const;
    /// text(), or name() where there is no text: what a user reads there.
    [[nodiscard]] QString readable() const;
    [[nodiscard]] QString selectedText() const;
    [[nodiscard]] QRect extents() const; ///< on the screen
    [[nodiscard]] QStringList actions() const;
    /// Performs the action of that name; false when there is none or it was refused.
    bool doAction(const QString &action) const;
    bool doAction() const; ///< the first one

    [[nodiscard]] std::vector<Accessible> children() const;
    /// All below it, depth first, itself not included; at most `limit`.
    [[nodiscard]] std::vector<Accessible> descendants(std::size_t limit = 4000) const;
    /// The first below it for which the condition holds; null for none.
    [[nodiscard]] Accessible find(const std::function<bool(const Accessible &)> &condition) const;
    /// By role and exact name; an empty one matches all.
    [[nodiscard]] Accessible find(const QString &role, const QString &name = {}) const;
    /// "role 'name' text" lines of everything below, for failure messages.
    [[nodiscard]] QString dump() const;

    [[nodiscard]] const QString &bus() const { return m_bus; }
    [[nodiscard]] const QString &path() const { return m_path; }

private:
    bool visit(const std::function<bool(const Accessible &)> &visitor, std::size_t &limit) const;

    const AccessibleTree *m_tree = nullptr;
    QString m_bus;
    QString m_path;
};

} // namespace orvesa::desktop
