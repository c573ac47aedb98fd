#pragma once

#include <QObject>
#include <QStringList>

// A style listener that appends its name to a shared journal on every restyled(),
// so that tests can check both how often and in which order styles notified.
class RestyleRecorder : public QObject
{
    Q_OBJECT

public:
    RestyleRecorder(const QString& name, QStringList* journal);

    int calls() const { return mCalls; }

public Q_SLOTS:
    void restyled();

private:
    QStringList* mJournal;
    int mCalls = 0;
};
