#pragma once

// From an image of a screen to its text. Owned and used by one thread; the engines' threads are the pool's.

#include "Tools/Recognition/EnginePool.h"
#include "Tools/Recognition/Layout.h"
#include "Tools/Recognition/Segment.h"

#include <QImage>
#include <QStringList>

namespace orvesa {

class TextReader final {
public:
    /// The pool must outlive the reader.
    explicit TextReader(EnginePool &pool);

    /// The lines in the order in which a person reads them; none where nothing is written.
    [[nodiscard]] QStringList read(const QImage &image);

private:
    QStringList readAcross(const GrayImage &ink, const TextBlock &block);
    /// What the first reading is unsure of is read at another size; the surer reading stays.
    void readAgain(const GrayImage &ink, int text, std::vector<Segment> &segments);
    QStringList readDown(const GrayImage &ink, const TextBlock &block);

    EnginePool &m_pool;
};

} // namespace orvesa
