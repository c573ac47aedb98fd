#pragma once

#include <QList>
#include <QSet>
#include <QVector>

// Evaluates items after their prerequisites, each at most once per evaluator.
// T provides prerequisites() (an iterable of T*), evaluate() and logCycle(T*).
// A prerequisite met again while it is still in progress closes a cycle: it is
// reported through the item that reached it and not followed.
//
// The walk keeps its own stack: chains of styles come from files and can be far
// deeper than the call stack would allow.
template <typename T> class DependancyEvaluator
{
public:
    void evaluate(T* item);

    bool isDone(T* item) const { return mDone.contains(item); }
    // Items in the order their evaluation finished.
    const QList<T*>& finished() const { return mFinished; }

private:
    struct Frame
    {
        T* item;
        QVector<T*> prerequisites;
        int next;
    };

    void enter(QVector<Frame>& stack, T* item);

    QSet<T*> mInProgress;
    QSet<T*> mDone;
    QList<T*> mFinished;
};

template <typename T> void DependancyEvaluator<T>::enter(QVector<Frame>& stack, T* item)
{
    mInProgress.insert(item);
    QVector<T*> prerequisites;
    for (T* prereq : item->prerequisites())
        prerequisites.append(prereq);
    stack.append(Frame{item, prerequisites, 0});
}

template <typename T> void DependancyEvaluator<T>::evaluate(T* item)
{
    if (!item || mDone.contains(item) || mInProgress.contains(item))
        return;
    QVector<Frame> stack;
    enter(stack, item);
    while (!stack.isEmpty()) {
        Frame& top = stack.last();
        if (top.next < top.prerequisites.size()) {
            T* prereq = top.prerequisites.at(top.next++);
            if (!prereq || mDone.contains(prereq))
                continue;
            if (mInProgress.contains(prereq)) {
                top.item->logCycle(prereq);
                continue;
            }
            enter(stack, prereq);
            continue;
        }
        T* done = top.item;
        stack.removeLast();
        done->evaluate();
        mInProgress.remove(done);
        mDone.insert(done);
        mFinished.append(done);
    }
}
