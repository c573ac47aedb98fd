#include "ScrollSceneRows.h"

#include <control/Label.h>
#include <control/Panel.h>
#include <iterator>

DisplayView* ScrollSceneRows::createRow(int kind, DisplayView* parent)
{
    auto* row = new DisplayView(parent, "row");
    row->setStyle(Style(kind == 0 ? QStringLiteral("Bench/RowEven") : QStringLiteral("Bench/RowOdd")));
    // The divider overlaps nothing else in the row: painted right after the row's
    // background, it batches with the backgrounds of all rows.
    new Panel(row, "divider", QStringLiteral("Bench/Divider"));
    new Panel(row, "art", QStringLiteral("Bench/Art"));
    auto* text = new DisplayView(row, "text");
    text->setStyle(Style(QStringLiteral("Bench/Text")));
    new Label(text, "track", QString(), QStringLiteral("Bench/Track"));
    new Label(text, "artist", QString(), QStringLiteral("Bench/Artist"));
    return row;
}

void ScrollSceneRows::bindRow(DisplayView* view, int row)
{
    // The row's third child holds the two lines of text.
    const DisplayViewList::List text = (*std::next(view->children().list().begin(), 2))->children().list();
    static_cast<Label*>(text.first())->setText(QStringLiteral("Track %1").arg(row + 1));
    static_cast<Label*>(text.last())->setText(QStringLiteral("Artist name %1").arg(row % 37 + 1));
}
