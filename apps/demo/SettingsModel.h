#pragma once

#include <QString>
#include <QVector>
#include <control/ListModel.h>

class DataValue;

// The rows of one page of the settings: section headers, switches, sliders, rows
// that show a choice and rows that open another page.
class SettingsModel : public ListModel
{
    Q_OBJECT

public:
    struct Entry
    {
        enum Kind
        {
            Section,
            Toggle,
            Level,
            Choice,
            Page
        };
        Kind kind = Section;
        QString title;
        QString detail;
        DataValue* value = nullptr;
        double minimum = 0;
        double maximum = 1;
        double step = 0;
        // The page a Page row opens.
        QString page;
    };

    explicit SettingsModel(QObject* parent = nullptr);

    // "" is the first page; the others are named by the rows that open them.
    void setPage(const QString& page);
    const QString& page() const { return mPage; }
    QString pageTitle() const;
    static QStringList pages();

    const Entry& entry(int row) const { return mEntries[row]; }
    int count() const override { return mEntries.size(); }
    int sectionCount() const override { return mSections.size(); }
    int sectionStart(int section) const override { return mSections.value(section); }

private:
    static QVector<Entry> entriesOf(const QString& page);

    QString mPage;
    QVector<Entry> mEntries;
    QVector<int> mSections;
};
