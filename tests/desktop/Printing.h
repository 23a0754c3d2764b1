#pragma once

// How GoogleTest prints Qt's texts in failure messages: as text.

#include <QByteArray>
#include <QString>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *stream)
{
    *stream << '"' << bytes.toStdString() << '"';
}
