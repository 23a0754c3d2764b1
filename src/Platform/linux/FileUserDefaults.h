#pragma once

// The user's preferences, one text file per domain: $XDG_CONFIG_HOME/<identifier>.conf. DefaultsDocument describes its
// form.
//
// Main thread; works without an event loop. Every change is merged into the file as it then is, under a lock, and is on
// disk when the setter returns, so that two processes never lose each other's changes. What could not be read is never
// overwritten, and a file or value that is not understood is kept beside the new one with ".damaged" added to its name.
// What could not be written stays in memory and goes to disk with the next change that can. Each such trouble is logged
// in one line, once.

#include "Platform/UserDefaultsPort.h"
#include "Platform/linux/DefaultsDocument.h"
#include "Platform/linux/DefaultsFile.h"

#include <memory>
#include <set>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace orvesa {

class FileUserDefaults final : public UserDefaultsPort {
public:
    /// An empty folder stands for $XDG_CONFIG_HOME, or ~/.config.
    explicit FileUserDefaults(QString identifier, QString folder = {});
    ~FileUserDefaults() override;
    Q_DISABLE_COPY_MOVE(FileUserDefaults)

    [[nodiscard]] std::optional<DefaultsValue> value(const QString &key) const override;
    void set(const QString &key, const DefaultsValue &value) override;
    void remove(const QString &key) override;
    [[nodiscard]] bool hasUnwrittenChanges() const override { return !m_unwritten.empty(); }
    [[nodiscard]] std::optional<DefaultsDictionary> persistentDomain(const QString &name) const override;
    /// Watching the file needs an event loop.
    void setExternalChangeHandler(std::function<void()> handler) override;

    /// Where this program's own values are kept.
    [[nodiscard]] QString filePath() const;

private:
    using Changes = std::map<QString, std::optional<DefaultsValue>>;

    void change(const QString &key, const std::optional<DefaultsValue> &value);
    [[nodiscard]] bool store(const Changes &changes);
    /// The document to go on from; nothing when the file may not be touched.
    [[nodiscard]] std::optional<DefaultsDocument> understood(const DefaultsFile::Content &content) const;
    void load() const;
    void reportChange();
    void startWatching();
    void stopWatching();
    void folderChanged();
    void logOnce(const QString &trouble) const;

    QString m_folder;
    QString m_identifier;
    Changes m_unwritten;
    mutable bool m_loaded = false;
    mutable DefaultsDictionary m_values;
    mutable DefaultsFile::Stamp m_stamp;
    mutable std::set<QString> m_logged;
    std::function<void()> m_handler;
    int m_watch = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace orvesa
