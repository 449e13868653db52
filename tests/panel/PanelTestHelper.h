#pragma once

#include <QtTest>

#include <initializer_list>

// Declares the columns of a data table in one go: addColumns<int, QString>({ "width", "label" }).
template <typename... T>
void addColumns(std::initializer_list<const char*> aNames)
{
    Q_ASSERT(aNames.size() == sizeof...(T));
    auto name = aNames.begin();
    (QTest::addColumn<T>(*name++), ...);
}
