#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QObject>

/// The rows of a ListView: how many there are, which of them head sections, and the
/// signals that tell the lists showing them what changed. The data itself stays with
/// the application; the list's delegate reads it when it binds a row.
class ORBIS_UI_EXPORT ListModel : public QObject
{
    Q_OBJECT

public:
    explicit ListModel(QObject* parent = nullptr);

    virtual int count() const = 0;
    /// Sections group rows under a header row, the first row of the section. Their starts
    /// rise strictly; a list with sticky headers keeps the current one pinned at its top.
    virtual int sectionCount() const;
    virtual int sectionStart(int section) const;

signals:
    void modelReset(ListModel* model);
    void rowsInserted(ListModel* model, int first, int count);
    void rowsRemoved(ListModel* model, int first, int count);
    /// The data of rows changed but not their number: the rows shown are bound again.
    void rowsChanged(ListModel* model, int first, int count);
};
