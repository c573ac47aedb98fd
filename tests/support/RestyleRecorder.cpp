#include "RestyleRecorder.h"

RestyleRecorder::RestyleRecorder(const QString& name, QStringList* journal) : mJournal(journal)
{
    setObjectName(name);
}

void RestyleRecorder::restyled()
{
    ++mCalls;
    if (mJournal)
        mJournal->append(objectName());
}
