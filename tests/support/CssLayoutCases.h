#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <vector>

// The flexbox engine's own published cases (its generated C test file in the npm
// package), read as data: for every case the tree of nodes with the style values it
// assigns, in order, and the layout it expects. Tests rebuild them as view trees.
struct CssLayoutCase
{
    struct Assignment
    {
        QString field; // "dimensions", "flex_direction", ...
        QString index; // "CSS_WIDTH", "CSS_LEFT", ... or empty
        QString value; // "100", "CSS_FLEX_DIRECTION_ROW", ...
    };
    struct Node
    {
        QList<Assignment> style;
        QString measureText; // the measured text, empty for a node that is not measured
        QRectF expected;
        std::vector<Node> children;
    };
    QString name;
    Node root;
};

// All cases of the installed package, in file order; empty with *error set when the
// file is missing or not understood.
std::vector<CssLayoutCase> loadCssLayoutCases(QString* error);

// The text measure of those cases: the natural size of `text` at `width` (negative:
// unconstrained).
QSizeF measureCssLayoutCaseText(const QString& text, double width);

// The value of one of the engine's enumerators by name ("CSS_ALIGN_CENTER"), or -1.
int cssLayoutEnumValue(const QString& name);
