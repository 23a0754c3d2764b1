#pragma once

// Makes a failed expectation show a Qt text as text instead of as bytes.

#include <QByteArray>
#include <QString>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(QStringView text, std::ostream *stream)
{
    PrintTo(text.toString(), stream);
}

inline void PrintTo(const QByteArray &bytes, std::ostream *stream)
{
    *stream << '"' << bytes.toStdString() << '"';
}
