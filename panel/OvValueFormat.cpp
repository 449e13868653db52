#include "OvValueFormat.h"

#include <climits>
#include <cmath>

namespace {

// x + 0.5 truncated towards zero; saturated so that no out-of-range conversion happens.
int roundHalfUp(double aValue)
{
    const double shifted = aValue + 0.5;
    if (std::isnan(shifted))
        return 0;
    if (shifted >= double(INT_MAX))
        return INT_MAX;
    if (shifted <= double(INT_MIN))
        return INT_MIN;
    return int(shifted);
}

// The bands from 10000 upwards, identical for every unit.
QString formatLarge(double aValue)
{
    if (aValue < 100000.0)
        return formatValue(roundHalfUp(aValue), 1000, 3);
    if (aValue < 1000000.0)
        return formatValue(roundHalfUp(aValue / 10.0), 100, 3);
    if (aValue < 10000000.0)
        return formatValue(roundHalfUp(aValue / 100.0), 10000, 6);
    return formatValue(roundHalfUp(aValue / 1000.0), 1000, 6);
}

// The bands below 1, 100, 1000 and 10000 and then the large ones: shared by
// millimetres, mils and micrometres.
QString formatFromOneUp(double aValue)
{
    if (aValue < 1.0)
        return formatValue(roundHalfUp(aValue * 10000.0), 10000, 0);
    if (aValue < 100.0)
        return formatValue(roundHalfUp(aValue * 1000.0), 1000, 0);
    if (aValue < 1000.0)
        return formatValue(roundHalfUp(aValue * 100.0), 100, 0);
    if (aValue < 10000.0)
        return formatValue(roundHalfUp(aValue * 10.0), 10, 0);
    return formatLarge(aValue);
}

} // namespace

QString formatValue(int aValue, int aDivisor, int anExponent)
{
    const int divisor = aDivisor < 1 ? 1 : aDivisor;
    QString text;
    if (aValue == 0) {
        text = QStringLiteral("0");
    } else {
        const int decimals = int(std::floor(std::log(double(divisor)) / 2.302585092994046 + 0.5));
        text.setNum(double(aValue) / double(divisor), 'f', decimals);
    }
    if (anExponent < 0) {
        text += kDotChar;
        text += QStringLiteral("10 ");
        text += kSupMinusChar;
    } else if (anExponent > 0) {
        text += kDotChar;
        text += QStringLiteral("10");
    } else {
        return text;
    }
    const int magnitude = anExponent < 0 ? -anExponent : anExponent;
    if (magnitude == 3)
        text += kSupThreeChar;
    else if (magnitude == 6)
        text += kSupSixChar;
    return text;
}

QString calcDisplayValueMm(double aValue)
{
    if (std::isnan(aValue) || aValue < 1e-6)
        return formatValue(0, 1, 0);
    if (aValue < 0.001)
        return formatValue(roundHalfUp(aValue * 1e6), 1, -6);
    if (aValue < 0.01)
        return formatValue(roundHalfUp(aValue * 1e6), 1000, -3);
    if (aValue < 0.1)
        return formatValue(roundHalfUp(aValue * 100000.0), 100, -3);
    return formatFromOneUp(aValue);
}

QString calcDisplayValueMil(double aValue)
{
    if (std::isnan(aValue) || aValue < 0.0001)
        return formatValue(0, 1, 0);
    if (aValue < 0.1)
        return formatValue(roundHalfUp(aValue * 10000.0), 10, -3);
    return formatFromOneUp(aValue);
}

QString calcDisplayValueUm(double aValue)
{
    if (std::isnan(aValue))
        return formatValue(0, 1, 0);
    return formatFromOneUp(aValue);
}

QString calcDisplayValueNm(double aValue)
{
    if (std::isnan(aValue) || aValue < 1.0)
        return formatValue(0, 1, 0);
    if (aValue < 10000.0)
        return formatValue(roundHalfUp(aValue), 1, 0);
    return formatLarge(aValue);
}
