#pragma once

// Raw values of closed enumerations: the exact, case-sensitive strings by which cases are stored, sent and listed.
//
// An enumeration takes part by specialising RawValueTable with one row per case in declaration order. Everything here
// is constant data and may be used from any thread. Ownership: none.

#include <QString>
#include <QStringView>

#include <array>
#include <optional>
#include <string_view>

namespace orvesa {

/// One case and its raw value. Raw values are ASCII.
template <typename Enumeration>
struct RawValueRow {
    Enumeration value;
    std::string_view raw;
};

/// Specialise with `static constexpr std::array<RawValueRow<Enumeration>, N> rows`.
template <typename Enumeration>
struct RawValueTable;

template <typename Enumeration>
concept HasRawValues = requires { RawValueTable<Enumeration>::rows.size(); };

/// All cases in declaration order, which is also the order of every list shown to the user.
template <HasRawValues Enumeration>
[[nodiscard]] constexpr auto allCases()
{
    std::array<Enumeration, RawValueTable<Enumeration>::rows.size()> cases{};
    for (std::size_t index = 0; index < cases.size(); ++index) {
        cases[index] = RawValueTable<Enumeration>::rows[index].value;
    }
    return cases;
}

/// The raw value of a case.
template <HasRawValues Enumeration>
[[nodiscard]] QString rawValue(Enumeration value)
{
    for (const auto &row : RawValueTable<Enumeration>::rows) {
        if (row.value == value) {
            return QString::fromLatin1(row.raw.data(), static_cast<qsizetype>(row.raw.size()));
        }
    }
    return {};
}

/// The case with exactly this raw value; absent for any other text, never a default case.
template <HasRawValues Enumeration>
[[nodiscard]] std::optional<Enumeration> fromRawValue(QStringView raw)
{
    for (const auto &row : RawValueTable<Enumeration>::rows) {
        if (raw == QLatin1StringView(row.raw.data(), static_cast<qsizetype>(row.raw.size()))) {
            return row.value;
        }
    }
    return std::nullopt;
}

} // namespace orvesa
