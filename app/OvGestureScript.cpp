#include "OvGestureScript.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <cmath>

namespace {

const QChar kMicroSign(0x00B5);
const QChar kGreekMu(0x03BC);

bool toNumber(const QString& aText, double& aValue)
{
    bool ok = false;
    aValue = aText.toDouble(&ok);
    return ok && std::isfinite(aValue);
}

bool toInteger(const QString& aText, int& aValue)
{
    bool ok = false;
    aValue = aText.toInt(&ok);
    return ok;
}

} // namespace

QStringList OvGestureScript::toolNames()
{
    return { QStringLiteral("distance"), QStringLiteral("circle-distance"), QStringLiteral("free-line"),
             QStringLiteral("multiple"), QStringLiteral("parallel"), QStringLiteral("free-form"),
             QStringLiteral("circle"), QStringLiteral("diameter"), QStringLiteral("angle"),
             QStringLiteral("outer-angle"), QStringLiteral("none") };
}

QString OvGestureScript::canonicalUnitName(const QString& aName)
{
    static const QStringList plain = { QStringLiteral("auto"), QStringLiteral("nm"), QStringLiteral("mm"),
                                       QStringLiteral("cm"), QStringLiteral("mil"), QStringLiteral("inch"),
                                       QStringLiteral("ft"), QStringLiteral("m") };
    if (plain.contains(aName))
        return aName;
    if (aName == QLatin1String("um") || aName == QString(kMicroSign) + QLatin1Char('m')
        || aName == QString(kGreekMu) + QLatin1Char('m'))
        return QString(kGreekMu) + QLatin1Char('m');
    if (aName == QLatin1String("deg") || aName == QStringLiteral("deg(\u00B0)"))
        return QStringLiteral("deg(\u00B0)");
    return QString();
}

QString OvGestureScript::errorText() const
{
    if (errorAt > 0)
        return QStringLiteral("line %1: %2").arg(errorAt).arg(error);
    return error;
}

bool OvGestureScript::fail(int aLineNumber, const QString& aReason)
{
    errorAt = aLineNumber;
    error = aReason;
    return false;
}

bool OvGestureScript::load(const QString& aFileName)
{
    QFile file(aFileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        theCommands.clear();
        errorAt = 0;
        error = QStringLiteral("cannot read script %1: %2").arg(aFileName, file.errorString());
        return false;
    }
    return parse(QString::fromUtf8(file.readAll()));
}

bool OvGestureScript::parse(const QString& aText)
{
    theCommands.clear();
    errorAt = 0;
    error.clear();
    const QStringList lines = aText.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        if (!parseLine(lines.at(i), i + 1))
            return false;
    }
    return true;
}

bool OvGestureScript::parseLine(const QString& aLine, int aLineNumber)
{
    // '#' opens a comment wherever a word starts with it, except the colour
    // argument of "color".
    QStringList words;
    const QStringList raw = aLine.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int i = 0; i < raw.size(); ++i) {
        const QString& word = raw.at(i);
        const bool colourArgument = i == 1 && raw.first() == QLatin1String("color");
        if (!colourArgument && word.startsWith(QLatin1Char('#')))
            break;
        const int hash = colourArgument ? -1 : word.indexOf(QLatin1Char('#'));
        if (hash > 0) {
            words << word.left(hash);
            break;
        }
        words << word;
    }
    if (words.isEmpty())
        return true;

    const QString verb = words.first();
    const QStringList args = words.mid(1);
    OvScriptCommand command;
    command.line = aLineNumber;

    auto expectArgs = [&](int aCount, const QString& aUsage) {
        if (args.size() != aCount)
            return fail(aLineNumber, QStringLiteral("'%1' expects %2").arg(verb, aUsage));
        return true;
    };

    static const QMap<QString, OvScriptCommand::Kind> pointVerbs = {
        { QStringLiteral("press"), OvScriptCommand::Press },
        { QStringLiteral("move"), OvScriptCommand::Move },
        { QStringLiteral("release"), OvScriptCommand::Release },
        { QStringLiteral("click"), OvScriptCommand::Click },
    };
    static const QMap<QString, OvScriptCommand::Kind> bareVerbs = {
        { QStringLiteral("delete"), OvScriptCommand::Delete },
        { QStringLiteral("undo"), OvScriptCommand::Undo },
        { QStringLiteral("redo"), OvScriptCommand::Redo },
    };

    if (pointVerbs.contains(verb)) {
        if (!expectArgs(2, QStringLiteral("X Y")))
            return false;
        double x = 0.0;
        double y = 0.0;
        if (!toNumber(args.at(0), x) || !toNumber(args.at(1), y))
            return fail(aLineNumber, QStringLiteral("'%1' needs numeric coordinates, got '%2 %3'")
                                         .arg(verb, args.at(0), args.at(1)));
        command.kind = pointVerbs.value(verb);
        command.point = QPointF(x, y);
    } else if (bareVerbs.contains(verb)) {
        if (!expectArgs(0, QStringLiteral("no argument")))
            return false;
        command.kind = bareVerbs.value(verb);
    } else if (verb == QLatin1String("select")) {
        if (args != QStringList{ QStringLiteral("none") })
            return fail(aLineNumber, QStringLiteral("'select' supports only 'select none'"));
        command.kind = OvScriptCommand::SelectNone;
    } else if (verb == QLatin1String("tool")) {
        if (!expectArgs(1, QStringLiteral("a tool name")))
            return false;
        if (!toolNames().contains(args.first()))
            return fail(aLineNumber, QStringLiteral("unknown tool '%1' (known: %2)")
                                         .arg(args.first(), toolNames().join(QStringLiteral(", "))));
        command.kind = OvScriptCommand::Tool;
        command.text = args.first();
    } else if (verb == QLatin1String("unit")) {
        if (!expectArgs(1, QStringLiteral("a unit name")))
            return false;
        command.text = canonicalUnitName(args.first());
        if (command.text.isEmpty())
            return fail(aLineNumber, QStringLiteral("unknown unit '%1'").arg(args.first()));
        command.kind = OvScriptCommand::Unit;
    } else if (verb == QLatin1String("color")) {
        if (!expectArgs(1, QStringLiteral("#RRGGBB")))
            return false;
        static const QRegularExpression rgb(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
        if (!rgb.match(args.first()).hasMatch())
            return fail(aLineNumber, QStringLiteral("colour must be #RRGGBB, got '%1'").arg(args.first()));
        command.kind = OvScriptCommand::Color;
        command.color = QColor(args.first());
    } else if (verb == QLatin1String("width") || verb == QLatin1String("font") || verb == QLatin1String("frame")) {
        if (!expectArgs(1, QStringLiteral("a whole number")))
            return false;
        int value = 0;
        if (!toInteger(args.first(), value))
            return fail(aLineNumber, QStringLiteral("'%1' needs a whole number, got '%2'").arg(verb, args.first()));
        if (verb == QLatin1String("width") && (value < 1 || value > 20))
            return fail(aLineNumber, QStringLiteral("width must be 1 to 20, got %1").arg(value));
        if (verb == QLatin1String("font") && (value < 8 || value > 72))
            return fail(aLineNumber, QStringLiteral("font size must be 8 to 72, got %1").arg(value));
        if (verb == QLatin1String("frame") && value < 0)
            return fail(aLineNumber, QStringLiteral("frame must be 0 or more, got %1").arg(value));
        command.kind = verb == QLatin1String("width") ? OvScriptCommand::Width
                     : verb == QLatin1String("font")  ? OvScriptCommand::Font
                                                      : OvScriptCommand::Frame;
        command.number = value;
    } else if (verb == QLatin1String("calibrate")) {
        if (!expectArgs(1, QStringLiteral("micrometres per pixel")))
            return false;
        double value = 0.0;
        if (!toNumber(args.first(), value) || value <= 0.0)
            return fail(aLineNumber, QStringLiteral("calibration must be a number above 0, got '%1'")
                                         .arg(args.first()));
        command.kind = OvScriptCommand::Calibrate;
        command.number = value;
    } else {
        return fail(aLineNumber, QStringLiteral("unknown command '%1'").arg(verb));
    }
    theCommands.append(command);
    return true;
}
