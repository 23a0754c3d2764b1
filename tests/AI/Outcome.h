#pragma once

// What an operation ended with, for tests: runs the event loop until a task is done and keeps its value or its error.

#include "Models/AppError.h"

#include <gtest/gtest.h>

#include <QCoroTask>

#include <QEventLoop>
#include <QString>

#include <optional>
#include <ostream>
#include <utility>

namespace orvesa {

template <typename Value>
struct Outcome {
    std::optional<Value> value;
    std::optional<AppError> error;

    /// The message of apiRequestFailed, or a text that no such message is.
    [[nodiscard]] QString failure() const
    {
        if (!error) {
            return QStringLiteral("<no error>");
        }
        return error->kind() == AppError::Kind::apiRequestFailed ? error->message()
                                                                 : QStringLiteral("<another kind of error>");
    }

    [[nodiscard]] bool hasKind(AppError::Kind kind) const { return error && error->kind() == kind; }
};

// QCoro::waitFor() never returns when its task throws, so this waits by itself.

template <typename Value>
[[nodiscard]] Outcome<Value> outcome(QCoro::Task<Value> task)
{
    Outcome<Value> result;
    QEventLoop loop;
    const auto await = [&]() -> QCoro::Task<void> {
        try {
            result.value = co_await task;
        } catch (const AppError &error) {
            result.error = error;
        }
        loop.quit();
    };
    const QCoro::Task<void> waiting = await();
    if (!waiting.isReady()) {
        loop.exec();
    }
    return result;
}

/// A task without a value gives true.
[[nodiscard]] inline Outcome<bool> outcome(QCoro::Task<void> task)
{
    const auto withValue = [](QCoro::Task<void> inner) -> QCoro::Task<bool> {
        co_await inner;
        co_return true;
    };
    return outcome(withValue(std::move(task)));
}

} // namespace orvesa

QT_BEGIN_NAMESPACE
// Readable values in the messages of failed expectations.
inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *stream)
{
    *stream << '"' << bytes.toStdString() << '"';
}
QT_END_NAMESPACE
