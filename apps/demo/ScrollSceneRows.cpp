#include "ScrollSceneRows.h"

#include <control/Label.h>
#include <control/Panel.h>
#include <iterator>

DisplayView* ScrollSceneRows::createRow(int kind, DisplayView* parent)
{
    auto* row = new DisplayView(parent, "row");
    row->setStyle(Style(kind == 0 ? QStringLiteral("Bench/RowEven") : QStringLiteral("Bench/RowOdd")));
    new Panel(row, "art", QStringLiteral("Bench/Art"));
    auto* text = new DisplayView(row, "text");
    text->setStyle(Style(QStringLiteral("Bench/Text")));
    new Label(text, "track", QString(), QStringLiteral("Bench/Track"));
    new Label(text, "artist", QString(), QStringLiteral("Bench/Artist"));
    new Panel(row, "divider", QStringLiteral("Bench/Divider"));
    return row;
}

void ScrollSceneRows::bindRow(DisplayView* view, int row)
{
    // The row's second child holds the two lines of text.
    const DisplayViewList::List text = (*std::next(view->children().list().begin()))->children().list();
    static_cast<Label*>(text.first())->setText(QStringLiteral("Track %1").arg(row + 1));
    static_cast<Label*>(text.last())->setText(QStringLiteral("Artist name %1").arg(row % 37 + 1));
}
