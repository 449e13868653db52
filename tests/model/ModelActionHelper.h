#pragma once

#include <QPoint>
#include <QString>
#include <QVector>

class QRandomGenerator;

// One thing a user does in the viewer, drawn at random from a seed. An action
// names no stored object directly: `target` picks one of those stored when it
// runs (modulo their count), so any sub-list of a sequence still replays and
// the shrinker can drop steps freely.
struct ModelActionHelper
{
    enum Kind
    {
        Draw,          // kind, byClicks, points
        SelectNone,
        Select,        // target, add (Ctrl+click)
        SelectAll,
        ClickBody,     // target: a click without movement on its body
        MoveBody,      // target, delta
        DragHandle,    // target, handle, delta
        ToggleActive,  // target: a base's active button
        Style,         // style, value
        Delete,        // Edit > Delete Selected
        Trash,         // target: its trash button
        Undo,
        Redo,
        HistoryJump,   // value: index into the history (modulo its length + 1)
        Frame,         // value: frame, then back again
        Calibrate,     // value: choice of calibration
        CameraResolution,
        SaveReopen,
        KindCount
    };
    enum StyleKind { StyleUnit, StyleWidth, StyleFont, StyleColor };

    Kind kind = SelectNone;
    int shape = 0;      // for Draw: index into shapeNames()
    bool byClicks = false;
    bool add = false;
    int target = 0;
    int handle = 0;
    int style = 0;
    int value = 0;
    QPoint delta;
    QVector<QPoint> points;

    // The step as one readable line ("draw parallel by drag (100,200) (300,220)").
    QString describe() const;

    // The action a describe() line stands for; false for a line that is none.
    static bool parse(const QString& aLine, ModelActionHelper* anAction);

    // The seven kinds by the script's tool names; measured lines of the
    // relative kinds are drawn with the same names.
    static const QStringList& shapeNames();
    static int shapeType(int aShape);

    // A random action; aSeries says whether frame changes make sense.
    static ModelActionHelper random(QRandomGenerator& aRandom, bool aSeries);
    static QVector<ModelActionHelper> randomSequence(quint64 aSeed, int aCount, bool aSeries);
};
