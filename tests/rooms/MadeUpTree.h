#pragma once

// A small tree of files in a temporary folder, gone with the object.

#include "rooms/SourceTree.h"

#include <QTemporaryDir>

#include <initializer_list>
#include <utility>

namespace orvesa {

class MadeUpTree final {
public:
    /// Paths below the folder and the files' texts.
    explicit MadeUpTree(std::initializer_list<std::pair<const char *, const char *>> files);

    [[nodiscard]] SourceTree read() const;

private:
    QTemporaryDir m_folder;
};

} // namespace orvesa
