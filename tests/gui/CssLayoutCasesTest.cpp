// The flexbox engine's published cases, rebuilt as view trees through the view API
// and compared with the result rectangles the views receive.
#include "support/CssLayoutCases.h"
#include "support/QtPrinters.h"

#include "CssLayout.h"
#include "LogCapture.h"

#include <QStringList>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace {
class MeasuredText : public DisplayView
{
public:
    MeasuredText(DisplayView* parent, const QString& text) : DisplayView(parent, "text"), mText(text) {}
    QSizeF naturalSize(double width) override { return measureCssLayoutCaseText(mText, width); }

private:
    QString mText;
};

struct Built
{
    const CssLayoutCase::Node* node;
    DisplayView* view;
};

class CaseTree
{
public:
    explicit CaseTree(const CssLayoutCase& testCase) : mHost(nullptr, "host")
    {
        mRoot = build(testCase.root, &mHost, 0);
        mRoot->enableCssLayout();
        for (const Built& built : mViews) {
            if (!built.node->measureText.isEmpty())
                built.view->cssLayout()->setOption(CssLayout::Measure, true);
        }
        for (const Built& built : mViews)
            applyStyle(*built.node, built.view);
    }

    DisplayView* root() const { return mRoot; }
    const std::vector<Built>& views() const { return mViews; }

    void layout() { mRoot->layout(true); }

    // Differences between the views' results and the case's, one line each. A view
    // that places itself (absolute without right or bottom) and a root without
    // children are not laid out by their parent's flow: they keep their own frame.
    QStringList differences() const
    {
        QStringList lines;
        for (const Built& built : mViews) {
            const QRectF result = built.view->layoutResultRect();
            CssLayout* layout = built.view->cssLayout();
            const bool inFlow =
                layout->isChild() || (built.view == mRoot && !layout->cachedChildren().empty());
            if (!inFlow)
                continue;
            const QRectF expected = built.node->expected;
            const auto near = [](double a, double b) {
                return std::abs(a - b) < 1e-3;
            };
            if (!near(result.x(), expected.x()) || !near(result.y(), expected.y()) ||
                !near(result.width(), expected.width()) || !near(result.height(), expected.height()))
                lines << QStringLiteral("%1: (%2, %3, %4 x %5), expected (%6, %7, %8 x %9)")
                             .arg(built.view->viewPath())
                             .arg(result.x())
                             .arg(result.y())
                             .arg(result.width())
                             .arg(result.height())
                             .arg(expected.x())
                             .arg(expected.y())
                             .arg(expected.width())
                             .arg(expected.height());
        }
        return lines;
    }

private:
    DisplayView* build(const CssLayoutCase::Node& node, DisplayView* parent, int index)
    {
        const QByteArray name = QByteArray("n") + QByteArray::number(index);
        DisplayView* view = node.measureText.isEmpty() ? new DisplayView(parent, name.constData())
                                                       : new MeasuredText(parent, node.measureText);
        mViews.push_back({&node, view});
        for (size_t i = 0; i < node.children.size(); ++i)
            build(node.children[i], view, int(i));
        return view;
    }

    static void applyStyle(const CssLayoutCase::Node& node, DisplayView* view)
    {
        for (const CssLayoutCase::Assignment& a : node.style) {
            const int index = cssLayoutEnumValue(a.index);
            const int enumerator = cssLayoutEnumValue(a.value);
            const float number = a.value.toFloat();
            const css_position_t edge = css_position_t(index);
            const css_dimension_t dimension = css_dimension_t(index);
            if (a.field == QLatin1String("dimensions"))
                view->setCssSize(dimension, number);
            else if (a.field == QLatin1String("minDimensions"))
                view->setCssMinSize(dimension, number);
            else if (a.field == QLatin1String("maxDimensions"))
                view->setCssMaxSize(dimension, number);
            else if (a.field == QLatin1String("position"))
                view->setCssPosition(edge, number);
            else if (a.field == QLatin1String("margin"))
                view->setCssMargin(edge, number);
            else if (a.field == QLatin1String("padding"))
                view->setCssPadding(edge, number);
            else if (a.field == QLatin1String("border"))
                view->setCssBorder(edge, number);
            else if (a.field == QLatin1String("flex"))
                view->setCssFlex(number);
            else if (a.field == QLatin1String("direction"))
                view->setCssDirection(css_direction_t(enumerator));
            else if (a.field == QLatin1String("flex_direction"))
                view->setCssFlexDirection(css_flex_direction_t(enumerator));
            else if (a.field == QLatin1String("justify_content"))
                view->setCssJustifyContent(css_justify_t(enumerator));
            else if (a.field == QLatin1String("align_content"))
                view->setCssAlignContent(css_align_t(enumerator));
            else if (a.field == QLatin1String("align_items"))
                view->setCssAlignItems(css_align_t(enumerator));
            else if (a.field == QLatin1String("align_self"))
                view->setCssAlignSelf(css_align_t(enumerator));
            else if (a.field == QLatin1String("flex_wrap"))
                view->setCssFlexWrap(css_wrap_type_t(enumerator));
            else if (a.field == QLatin1String("position_type"))
                view->setCssPositionType(css_position_type_t(enumerator));
            else
                ADD_FAILURE() << "unknown style field " << a.field.toStdString();
        }
    }

    DisplayView mHost;
    DisplayView* mRoot = nullptr;
    std::vector<Built> mViews;
};

const std::vector<CssLayoutCase>& allCases()
{
    static QString error;
    static const std::vector<CssLayoutCase> cases = loadCssLayoutCases(&error);
    return cases;
}

// The cases by what they exercise; a case goes to the first group whose words its
// name contains.
const QList<QPair<QString, QStringList>>& groups()
{
    static const QList<QPair<QString, QStringList>> table = {
        {"measure", {"text"}},
        {"absolute", {"absolute", "bottom", "top and left", "with left"}},
        {"bounds", {"bounds", "bounded", "negative width", "smaller than"}},
        {"wrap", {"wrap", "alignContent"}},
        {"justify", {"justifyContent", "space-", "flex-end", "for center"}},
        {"align", {"align", "stretch"}},
        {"edges", {"margin", "padding", "border"}},
        {"flex", {"flex"}},
        {"direction", {""}},
    };
    return table;
}

QString groupOf(const CssLayoutCase& testCase)
{
    for (const auto& group : groups()) {
        for (const QString& word : group.second) {
            if (testCase.name.contains(word))
                return group.first;
        }
    }
    return QString();
}

void runGroup(const QString& group, const std::function<void(CaseTree&)>& perturb = {})
{
    ASSERT_GE(allCases().size(), 170u) << "the engine's cases could not be read";
    int ran = 0;
    for (const CssLayoutCase& testCase : allCases()) {
        if (groupOf(testCase) != group)
            continue;
        ++ran;
        LogCapture quiet; // borders and flex on fixed views are reported; the cases use both
        CaseTree tree(testCase);
        tree.layout();
        if (perturb) {
            perturb(tree);
            tree.layout();
        }
        const QStringList differences = tree.differences();
        EXPECT_TRUE(differences.isEmpty())
            << testCase.name.toStdString() << "\n  " << differences.join("\n  ").toStdString();
    }
    EXPECT_GT(ran, 0);
}
} // namespace

TEST(CssLayoutCases, EveryCaseIsReadAndGrouped)
{
    const std::vector<CssLayoutCase>& cases = allCases();
    ASSERT_GE(cases.size(), 170u);
    EXPECT_EQ(cases.front().name, "should layout a single node with width and height");
    EXPECT_EQ(cases.front().root.expected, QRectF(0, 0, 100, 200));
    QMap<QString, int> counts;
    for (const CssLayoutCase& testCase : cases)
        ++counts[groupOf(testCase)];
    for (const auto& group : groups())
        EXPECT_GE(counts.value(group.first), 5) << group.first.toStdString();
}

TEST(CssLayoutCases, FlexDirectionAndOrder)
{
    runGroup("direction");
}

TEST(CssLayoutCases, Flex)
{
    runGroup("flex");
}

TEST(CssLayoutCases, JustifyContent)
{
    runGroup("justify");
}

TEST(CssLayoutCases, AlignItemsAndSelf)
{
    runGroup("align");
}

TEST(CssLayoutCases, Wrap)
{
    runGroup("wrap");
}

TEST(CssLayoutCases, AbsolutePosition)
{
    runGroup("absolute");
}

TEST(CssLayoutCases, MinAndMaxBounds)
{
    runGroup("bounds");
}

TEST(CssLayoutCases, MarginPaddingAndBorder)
{
    runGroup("edges");
}

TEST(CssLayoutCases, MeasuredText)
{
    runGroup("measure");
}

// Every case again, laid out once with a different width at the top and once with a
// changed last leaf, then restored: the cached results the engine keeps between passes
// must never leak into the restored layout.
TEST(CssLayoutCases, RelayoutAfterAChangeAndBack)
{
    for (const auto& group : groups()) {
        runGroup(group.first, [](CaseTree& tree) {
            DisplayView* root = tree.root();
            const float width = root->cssWidth();
            root->setCssWidth(std::isnan(width) ? 333 : width + 37);
            tree.layout();
            root->setCssWidth(width);
            tree.layout();

            DisplayView* leaf = tree.views().back().view;
            const float height = leaf->cssHeight();
            leaf->setCssHeight(std::isnan(height) ? 11 : height + 11);
            tree.layout();
            leaf->setCssHeight(height);
        });
    }
}
