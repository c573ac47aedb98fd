#include "SettingsDelegate.h"

#include "SettingsModel.h"
#include "SettingsRow.h"

int SettingsDelegate::rowKind(int row) const
{
    return mModel->entry(row).kind;
}

DisplayView* SettingsDelegate::createRow(int kind, DisplayView* parent)
{
    return new SettingsRow(parent, SettingsModel::Entry::Kind(kind));
}

void SettingsDelegate::bindRow(DisplayView* view, int row)
{
    static_cast<SettingsRow*>(view)->bind(mModel->entry(row));
}

void SettingsDelegate::unbindRow(DisplayView* view, int)
{
    static_cast<SettingsRow*>(view)->unbind();
}

int SettingsDelegate::rowHeight(int row) const
{
    return mModel->entry(row).kind == SettingsModel::Entry::Section ? kSectionHeight : kRowHeight;
}
