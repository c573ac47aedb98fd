#include "DevToolsDomTree.h"

#include "DisplayDevice.h"

#include <QSet>

namespace {

constexpr int kElementNode = 1;
constexpr int kDocumentNode = 9;

QString number(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace

DevToolsDomTree::DevToolsDomTree(DisplayDevice* device, EventSink sink)
    : mDevice(device), mSink(std::move(sink))
{}

void DevToolsDomTree::setExcludedView(DisplayView* view)
{
    mExcluded = view;
}

QString DevToolsDomTree::nodeNameOf(DisplayView* view)
{
    return QString::fromLatin1(view->metaObject()->className());
}

QStringList DevToolsDomTree::attributesOf(DisplayView* view)
{
    QStringList attributes;
    const QString name = view->viewName();
    if (name != nodeNameOf(view))
        attributes << QStringLiteral("id") << name;
    attributes << QStringLiteral("x") << number(view->x()) << QStringLiteral("y") << number(view->y())
               << QStringLiteral("width") << QString::number(view->width()) << QStringLiteral("height")
               << QString::number(view->height());
    if (!view->visibleFlag())
        attributes << QStringLiteral("hidden") << QString();
    if (!view->isEnabled())
        attributes << QStringLiteral("disabled") << QString();
    if (view->alpha() != 1.0f)
        attributes << QStringLiteral("alpha") << number(view->alpha());
    const QString style = view->style().styleText();
    if (!style.isEmpty())
        attributes << QStringLiteral("style") << style;
    return attributes;
}

int DevToolsDomTree::nodeId(DisplayView* view)
{
    auto it = mIds.find(view);
    // A stale entry belongs to a deleted view whose address was reused.
    if (it != mIds.end() && it->first)
        return it->second;
    const int id = mNextId++;
    mIds.insert(view, qMakePair(QPointer<DisplayView>(view), id));
    mViews.insert(id, view);
    return id;
}

DisplayView* DevToolsDomTree::view(int nodeId) const
{
    return mViews.value(nodeId);
}

bool DevToolsDomTree::isKnown(int nodeId) const
{
    return mNodes.contains(nodeId);
}

QVector<DisplayView*> DevToolsDomTree::childViews(int nodeId) const
{
    QVector<DisplayView*> views;
    if (nodeId == kDocumentId) {
        views << mDevice;
        return views;
    }
    DisplayView* parent = view(nodeId);
    if (!parent)
        return views;
    views.reserve(parent->children().size());
    for (DisplayView* child : parent->children().list()) {
        if (child != mExcluded && !child->isDestroying())
            views << child;
    }
    return views;
}

QJsonObject DevToolsDomTree::document(int depth)
{
    mNodes.clear();
    mNodes.insert(kDocumentId, Node());
    const QJsonArray children = describeChildren(kDocumentId, depth < 0 ? -1 : depth - 1);
    const QString url = QStringLiteral("orbis://display/%1").arg(mDevice->screen());
    return QJsonObject{{QStringLiteral("nodeId"), kDocumentId},
                       {QStringLiteral("backendNodeId"), kDocumentId},
                       {QStringLiteral("nodeType"), kDocumentNode},
                       {QStringLiteral("nodeName"), QStringLiteral("#document")},
                       {QStringLiteral("localName"), QString()},
                       {QStringLiteral("nodeValue"), QString()},
                       {QStringLiteral("childNodeCount"), children.size()},
                       {QStringLiteral("children"), children},
                       {QStringLiteral("documentURL"), url},
                       {QStringLiteral("baseURL"), url},
                       // An XML document keeps the class names' case in the tools.
                       {QStringLiteral("xmlVersion"), QStringLiteral("1.0")}};
}

QJsonObject DevToolsDomTree::describe(DisplayView* view, int parentId, int depth)
{
    const int id = nodeId(view);
    Node node;
    node.view = view;
    node.parentId = parentId;
    node.attributes = attributesOf(view);
    node.childCount = childViews(id).size();
    mNodes.insert(id, node);

    const QString name = nodeNameOf(view);
    QJsonObject json{{QStringLiteral("nodeId"), id},
                     {QStringLiteral("parentId"), parentId},
                     {QStringLiteral("backendNodeId"), id},
                     {QStringLiteral("nodeType"), kElementNode},
                     {QStringLiteral("nodeName"), name},
                     {QStringLiteral("localName"), name},
                     {QStringLiteral("nodeValue"), QString()},
                     {QStringLiteral("childNodeCount"), node.childCount},
                     {QStringLiteral("attributes"), QJsonArray::fromStringList(node.attributes)}};
    if (depth != 0)
        json.insert(QStringLiteral("children"), describeChildren(id, depth < 0 ? -1 : depth - 1));
    return json;
}

QJsonArray DevToolsDomTree::describeChildren(int nodeId, int depth)
{
    const QVector<DisplayView*> views = childViews(nodeId);
    QJsonArray nodes;
    QVector<int> ids;
    ids.reserve(views.size());
    for (DisplayView* child : views) {
        nodes.append(describe(child, nodeId, depth));
        ids << this->nodeId(child);
    }
    Node& node = mNodes[nodeId];
    node.childrenSent = true;
    node.children = ids;
    node.childCount = ids.size();
    return nodes;
}

bool DevToolsDomTree::requestChildNodes(int nodeId, int depth)
{
    auto it = mNodes.find(nodeId);
    if (it == mNodes.end())
        return false;
    // The client replaces the children it had, and with them everything below.
    forgetChildren(*it);
    const QJsonArray nodes = describeChildren(nodeId, depth < 0 ? -1 : depth - 1);
    mSink(QStringLiteral("DOM.setChildNodes"),
          QJsonObject{{QStringLiteral("parentId"), nodeId}, {QStringLiteral("nodes"), nodes}});
    return true;
}

int DevToolsDomTree::pushView(DisplayView* view)
{
    if (!hasDocument() || !view)
        return 0;
    QVector<DisplayView*> chain;
    for (DisplayView* v = view; v; v = v->parentView()) {
        if (v == mExcluded)
            return 0;
        chain.prepend(v);
    }
    if (chain.first() != mDevice)
        return 0;
    int parentId = kDocumentId;
    for (DisplayView* v : chain) {
        const int id = nodeId(v);
        if (!mNodes.contains(id))
            requestChildNodes(parentId, 1);
        if (!mNodes.contains(id))
            return 0;
        parentId = id;
    }
    return parentId;
}

void DevToolsDomTree::forget(int nodeId)
{
    auto it = mNodes.find(nodeId);
    if (it == mNodes.end())
        return;
    forgetChildren(*it);
    mNodes.erase(it);
}

void DevToolsDomTree::forgetChildren(Node& node)
{
    const QVector<int> children = node.children;
    node.children.clear();
    node.childrenSent = false;
    for (int child : children)
        forget(child);
}

void DevToolsDomTree::sync()
{
    if (hasDocument())
        syncNode(kDocumentId);
}

void DevToolsDomTree::syncNode(int nodeId)
{
    auto it = mNodes.find(nodeId);
    if (it == mNodes.end())
        return;
    if (nodeId != kDocumentId) {
        if (!it->view)
            return;
        syncAttributes(nodeId, *it);
    }
    if (!it->childrenSent) {
        const int count = childViews(nodeId).size();
        if (count != it->childCount) {
            it->childCount = count;
            mSink(QStringLiteral("DOM.childNodeCountUpdated"),
                  QJsonObject{{QStringLiteral("nodeId"), nodeId}, {QStringLiteral("childNodeCount"), count}});
        }
        return;
    }
    syncChildren(nodeId);
    const QVector<int> children = mNodes.value(nodeId).children;
    for (int child : children)
        syncNode(child);
}

void DevToolsDomTree::syncAttributes(int nodeId, Node& node)
{
    const QStringList now = attributesOf(node.view);
    if (now == node.attributes)
        return;
    const QStringList before = node.attributes;
    node.attributes = now;
    QHash<QString, QString> old;
    for (int i = 0; i + 1 < before.size(); i += 2)
        old.insert(before[i], before[i + 1]);
    for (int i = 0; i + 1 < now.size(); i += 2) {
        auto it = old.find(now[i]);
        if (it == old.end() || *it != now[i + 1]) {
            mSink(QStringLiteral("DOM.attributeModified"),
                  QJsonObject{{QStringLiteral("nodeId"), nodeId},
                              {QStringLiteral("name"), now[i]},
                              {QStringLiteral("value"), now[i + 1]}});
        }
        if (it != old.end())
            old.erase(it);
    }
    for (int i = 0; i + 1 < before.size(); i += 2) {
        if (old.contains(before[i]))
            mSink(QStringLiteral("DOM.attributeRemoved"),
                  QJsonObject{{QStringLiteral("nodeId"), nodeId}, {QStringLiteral("name"), before[i]}});
    }
}

void DevToolsDomTree::syncChildren(int nodeId)
{
    const QVector<DisplayView*> views = childViews(nodeId);
    QVector<int> ids;
    ids.reserve(views.size());
    for (DisplayView* child : views)
        ids << this->nodeId(child);
    const QVector<int> old = mNodes.value(nodeId).children;
    if (ids == old)
        return;

    // The children that keep their place: the old ones still present, in an order
    // that agrees with the new one. Every other old child is removed, every other new
    // one inserted, so that a moved child is removed and inserted again.
    const QSet<int> present(ids.begin(), ids.end());
    QVector<int> remaining;
    for (int id : old) {
        if (present.contains(id))
            remaining << id;
    }
    QSet<int> kept;
    int next = 0;
    for (int id : ids) {
        const int at = remaining.indexOf(id, next);
        if (at >= 0) {
            kept.insert(id);
            next = at + 1;
        }
    }
    for (int id : old) {
        if (kept.contains(id))
            continue;
        forget(id);
        mSink(QStringLiteral("DOM.childNodeRemoved"),
              QJsonObject{{QStringLiteral("parentNodeId"), nodeId}, {QStringLiteral("nodeId"), id}});
    }
    int previous = 0;
    for (int i = 0; i < ids.size(); ++i) {
        if (!kept.contains(ids[i])) {
            // A view that changed parents leaves its old place first, so that the
            // client never holds one id twice.
            const auto known = mNodes.constFind(ids[i]);
            if (known != mNodes.constEnd() && known->parentId != nodeId) {
                const int oldParent = known->parentId;
                forget(ids[i]);
                mNodes[oldParent].children.removeOne(ids[i]);
                mNodes[oldParent].childCount--;
                mSink(QStringLiteral("DOM.childNodeRemoved"),
                      QJsonObject{{QStringLiteral("parentNodeId"), oldParent},
                                  {QStringLiteral("nodeId"), ids[i]}});
            }
            const QJsonObject node = describe(views[i], nodeId, 0);
            mSink(QStringLiteral("DOM.childNodeInserted"),
                  QJsonObject{{QStringLiteral("parentNodeId"), nodeId},
                              {QStringLiteral("previousNodeId"), previous},
                              {QStringLiteral("node"), node}});
        }
        previous = ids[i];
    }
    Node& node = mNodes[nodeId];
    node.children = ids;
    node.childCount = ids.size();
}
