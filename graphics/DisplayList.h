#pragma once

#include <ConfigValue.h>
#include <QRegion>
#include <QSharedData>
#include <QVector>
#include <memory>

namespace gfx {

// "gfx/optimize_display_lists": off, lists are drawn as built (no hidden-surface
// removal, merging or substitution), to tell an optimiser fault from a drawing one.
extern ConfigBoolValue OptimizeDisplayLists;

class RenderItem;
class VertexBuffer;
struct RenderState;

// An ordered list of render items (owned), optimised once and then replayed any
// number of times. Shared explicitly (TExplicitlySharedDataPointer).
class DisplayList : public QSharedData
{
public:
    DisplayList();
    // Takes the items over (`items` is left empty). `allowSubstitution` lets the
    // optimiser fold solid fills under large translucent textures into their shader.
    DisplayList(QVector<RenderItem*>& items, bool allowSubstitution);
    ~DisplayList();
    DisplayList(const DisplayList&) = delete;
    DisplayList& operator=(const DisplayList&) = delete;

    void optimize();
    void render(const RenderState& state);
    // Writes every geometry into the list's vertex buffer and replaces each
    // geometry item by a slice of that buffer.
    void generateGeometry(const QRegion& covered);
    VertexBuffer* initOrGetVertexBuffer();

    const QVector<RenderItem*>& items() const { return mItems; }
    // Items that the optimiser found wholly hidden, at their places in items()
    // (empty elsewhere); drawn only when the list is drawn with an opacity below 1.
    const QVector<RenderItem*>& hiddenItems() const { return mHidden; }
    bool isOptimized() const { return mOptimized; }
    bool allowsSubstitution() const { return mAllowSubstitution; }
    // The area that opaque items cover, known once optimised.
    const QRegion& coveredRegion() const { return mCovered; }

private:
    QVector<RenderItem*> mItems;
    QVector<RenderItem*> mHidden;
    bool mOptimized = false;
    bool mAllowSubstitution = false;
    std::unique_ptr<VertexBuffer> mVertexBuffer;
    QRegion mCovered;
};

} // namespace gfx
