#include "ListModel.h"

ListModel::ListModel(QObject* parent) : QObject(parent) {}

int ListModel::sectionCount() const
{
    return 0;
}

int ListModel::sectionStart(int) const
{
    return 0;
}
