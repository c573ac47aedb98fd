#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QPointer>
#include <QStringList>
#include <QVector>
#include <functional>

class DisplayDevice;
class DisplayView;

// The view tree as the developer tools see it: a document whose element is the
// device, one element per view named by its class. Node ids are stable for the
// life of a session (a view keeps its id when it moves), and the tree remembers
// exactly what the client was told, so that sync() can turn the changes since then
// into the insert, remove, count and attribute events the client expects.
class ORBIS_UI_INTERNAL_EXPORT DevToolsDomTree
{
public:
    using EventSink = std::function<void(const QString& method, const QJsonObject& params)>;

    static constexpr int kDocumentId = 1;

    DevToolsDomTree(DisplayDevice* device, EventSink sink);

    // A view left out of the tree (the inspector's own overlay).
    void setExcludedView(DisplayView* view);
    // Forgets what the client knows and describes the document anew, `depth` levels
    // deep (-1: all).
    QJsonObject document(int depth);
    // Sends the node's children (to `depth` levels; -1 for all) with DOM.setChildNodes.
    bool requestChildNodes(int nodeId, int depth);
    // Makes the client know the view, sending the missing levels above it; its id, or 0.
    int pushView(DisplayView* view);
    // Compares the live tree with what the client was told and reports the difference.
    void sync();

    // The live view of a node id, or null (the document, unknown ids, deleted views).
    DisplayView* view(int nodeId) const;
    int nodeId(DisplayView* view);
    bool isKnown(int nodeId) const;
    bool hasDocument() const { return mNodes.contains(kDocumentId); }

    // The attribute list of a view, as name/value pairs.
    static QStringList attributesOf(DisplayView* view);
    static QString nodeNameOf(DisplayView* view);

private:
    // What the client holds for one node.
    struct Node
    {
        QPointer<DisplayView> view;
        int parentId = 0;
        bool childrenSent = false;
        QVector<int> children;
        int childCount = 0;
        QStringList attributes;
    };

    // A view and, `depth` levels deep, its children (-1: all).
    QJsonObject describe(DisplayView* view, int parentId, int depth);
    QJsonArray describeChildren(int nodeId, int depth);
    QVector<DisplayView*> childViews(int nodeId) const;
    void forget(int nodeId);
    void forgetChildren(Node& node);
    void syncNode(int nodeId);
    void syncAttributes(int nodeId, Node& node);
    void syncChildren(int nodeId);

    DisplayDevice* mDevice;
    EventSink mSink;
    int mNextId = kDocumentId + 1;
    DisplayView* mExcluded = nullptr;
    QHash<DisplayView*, QPair<QPointer<DisplayView>, int>> mIds;
    QHash<int, QPointer<DisplayView>> mViews;
    QHash<int, Node> mNodes; // the nodes the client knows
};
