#include "DependancyEvaluator.h"

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace {

struct Node
{
    QString name;
    QSet<Node*> prereqs;
    QStringList* journal;
    int evaluations = 0;

    const QSet<Node*>& prerequisites() const { return prereqs; }
    void evaluate()
    {
        ++evaluations;
        journal->append(name);
    }
    void logCycle(Node* other) { journal->append("cycle " + name + "->" + other->name); }
};

struct Graph
{
    QStringList journal;
    std::vector<std::unique_ptr<Node>> nodes;

    Node* add(const QString& name, std::initializer_list<Node*> prereqs = {})
    {
        nodes.push_back(std::make_unique<Node>(Node{name, {}, &journal}));
        for (Node* p : prereqs)
            nodes.back()->prereqs.insert(p);
        return nodes.back().get();
    }
};

} // namespace

TEST(DependancyEvaluator, EvaluatesEachItemOnceAfterItsPrerequisites)
{
    Graph g;
    Node* base = g.add("base");
    Node* left = g.add("left", {base});
    Node* right = g.add("right", {base});
    Node* top = g.add("top", {left, right});
    DependancyEvaluator<Node> evaluator;
    evaluator.evaluate(top);
    evaluator.evaluate(left);
    evaluator.evaluate(nullptr);

    for (const auto& n : g.nodes)
        EXPECT_EQ(n->evaluations, 1) << n->name.toStdString();
    EXPECT_EQ(g.journal.first(), "base");
    EXPECT_EQ(g.journal.last(), "top");
    EXPECT_EQ(evaluator.finished().size(), 4);
    EXPECT_EQ(evaluator.finished().last(), top);
    EXPECT_TRUE(evaluator.isDone(right));
}

TEST(DependancyEvaluator, ReportsACycleOnceAndStillEvaluatesEveryItem)
{
    Graph g;
    Node* a = g.add("a");
    Node* b = g.add("b", {a});
    Node* c = g.add("c", {b});
    a->prereqs.insert(c);
    Node* outside = g.add("outside", {b});
    DependancyEvaluator<Node> evaluator;
    evaluator.evaluate(a);
    evaluator.evaluate(outside);

    EXPECT_EQ(g.journal, QStringList({"cycle b->a", "b", "c", "a", "outside"}));
}

TEST(DependancyEvaluator, DeepChainsNeedNoCallStack)
{
    Graph g;
    Node* previous = g.add("0");
    const int depth = 300000;
    for (int i = 1; i < depth; ++i)
        previous = g.add(QString::number(i), {previous});
    DependancyEvaluator<Node> evaluator;
    evaluator.evaluate(previous);
    ASSERT_EQ(evaluator.finished().size(), depth);
    EXPECT_EQ(g.journal.first(), "0");
}
