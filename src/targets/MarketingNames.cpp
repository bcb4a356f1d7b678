// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "targets/MarketingNames.h"

#include "targets/BrevokTargetApps.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

/// A name and the version number that it starts at; it holds up to the next row's number.
struct Generation {
    qint64 from;
    QLatin1StringView name;
};

// The year 2016 never was: 12.0 came out as 2017.
constexpr std::array creativeSuites{Generation{30, ""_L1}, Generation{40, "2"_L1}, Generation{50, "3"_L1},
    Generation{60, "4"_L1}, Generation{70, "5"_L1}, Generation{75, "5.5"_L1}, Generation{80, "6"_L1}};
constexpr std::array creativeClouds{Generation{90, ""_L1}, Generation{100, " 2014"_L1},
    Generation{110, " 2015"_L1}, Generation{120, " 2017"_L1}, Generation{130, " 2018"_L1},
    Generation{140, " 2019"_L1}, Generation{150, " 2020"_L1}, Generation{160, " 2021"_L1},
    Generation{170, " 2022"_L1}, Generation{180, " 2023"_L1}, Generation{190, " 2024"_L1}};
constexpr qint64 firstSuite = 30;
constexpr qint64 firstCloud = 90;
constexpr qint64 firstUnnamed = 200;

/// The last row that starts at or below @p version, which is not below the first.
template <size_t size>
QLatin1StringView nameOf(const std::array<Generation, size> &generations, qint64 version)
{
    const auto next = std::find_if(
        generations.begin(), generations.end(), [version](const auto &row) { return row.from > version; });
    return std::prev(next)->name;
}

bool isSuite(qint64 version)
{
    return version >= firstSuite && version < firstCloud;
}

void appendFamily(QString &name, QLatin1StringView family)
{
    if (!name.endsWith(family)) {
        name += family;
    }
}

} // namespace

QString getVersionString(const QString &version)
{
    const qint64 number = leadingInteger(version);
    if (isSuite(number)) {
        return u"CS"_s + nameOf(creativeSuites, number);
    }
    return number < firstSuite ? u"-"_s : u"CC"_s;
}

QString targetLabel(const Record &target)
{
    QString label = nonEmptyString(target.value(TargetKeys::type));
    if (label.isEmpty()) {
        label = u"InDesign"_s;
    }
    const qint64 version = leadingInteger(nonEmptyString(target.value(TargetKeys::version)));
    if (isSuite(version)) {
        appendFamily(label, " CS"_L1);
        return label + nameOf(creativeSuites, version);
    }
    appendFamily(label, " CC"_L1);
    if (version < firstCloud || version >= firstUnnamed) {
        return label + u" [%1]"_s.arg(version);
    }
    return label + nameOf(creativeClouds, version);
}

QString targetCellLabel(const QString &path, const Record &target)
{
    return path + " ["_L1 + targetLabel(target) + u']';
}

} // namespace brevok
