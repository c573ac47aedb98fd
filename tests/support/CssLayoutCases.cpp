#include "CssLayoutCases.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSizeF>
#include <QTextStream>
#include <algorithm>

extern "C" {
#include <Layout.h>
}

namespace {
const char* const kCaseFile = ORBIS_SOURCE_DIR "/node_modules/css-layout/src/__tests__/Layout-test.c";

// The measure of the cases: a short word, and a long text that wraps onto two lines
// when narrower than its single-line width.
constexpr double kSmallWidth = 35;
constexpr double kSmallHeight = 18;
constexpr double kBigWidth = 172;
constexpr double kBigHeight = 36;
constexpr double kBigMinWidth = 100;
const char* const kSmallText = "small";
const char* const kLongText = "loooooooooong with space";

// Reads the generated cases: each is a block that builds the input tree through
// "node_N" pointers, then the expected tree the same way, and ends with
// test("name", root_node, root_layout).
class CaseReader
{
public:
    bool read(QTextStream& in, std::vector<CssLayoutCase>& cases, QString* error)
    {
        static const QRegularExpression start(R"(css_node_t \*root_(node|layout) = new_test_css_node\(\);)");
        static const QRegularExpression rootAlias(R"(css_node_t \*node_0 = root_(node|layout);)");
        static const QRegularExpression children(R"(init_css_node_children\(node_(\d+), (\d+)\);)");
        static const QRegularExpression child(
            R"(node_(\d+) = node_(\d+)->get_child\(node_\d+->context, (\d+)\);)");
        static const QRegularExpression style(R"(node_(\d+)->style\.(\w+)(?:\[(\w+)\])? = (.+);)");
        static const QRegularExpression layout(
            R"(node_(\d+)->layout\.(position|dimensions)\[(\w+)\] = (.+);)");
        static const QRegularExpression context(R"X(node_(\d+)->context = "(.*)";)X");
        static const QRegularExpression test(R"X(test\("(.*)", root_node, root_layout\);)X");

        CssLayoutCase current;
        CssLayoutCase::Node expected;
        int lineNumber = 0;
        while (!in.atEnd()) {
            const QString line = in.readLine().trimmed();
            ++lineNumber;
            QRegularExpressionMatch m;
            if ((m = start.match(line)).hasMatch()) {
                mInput = m.captured(1) == QLatin1String("node");
                if (mInput) {
                    current = CssLayoutCase();
                    expected = CssLayoutCase::Node();
                }
                mNodes.clear();
            } else if ((m = rootAlias.match(line)).hasMatch()) {
                mNodes[0] = mInput ? &current.root : &expected;
            } else if ((m = children.match(line)).hasMatch()) {
                if (CssLayoutCase::Node* node = at(m.captured(1)))
                    node->children.resize(size_t(m.captured(2).toInt()));
            } else if ((m = child.match(line)).hasMatch()) {
                CssLayoutCase::Node* parent = at(m.captured(2));
                const size_t index = size_t(m.captured(3).toInt());
                if (!parent || index >= parent->children.size())
                    return fail(error, lineNumber, line);
                mNodes[m.captured(1).toInt()] = &parent->children[index];
            } else if ((m = style.match(line)).hasMatch()) {
                CssLayoutCase::Node* node = at(m.captured(1));
                if (!node)
                    return fail(error, lineNumber, line);
                node->style.append({m.captured(2), m.captured(3), m.captured(4)});
            } else if ((m = layout.match(line)).hasMatch()) {
                CssLayoutCase::Node* node = at(m.captured(1));
                if (!node)
                    return fail(error, lineNumber, line);
                setExpected(node->expected, m.captured(3), m.captured(4).toDouble());
            } else if ((m = context.match(line)).hasMatch()) {
                if (CssLayoutCase::Node* node = at(m.captured(1)))
                    node->measureText = m.captured(2);
            } else if ((m = test.match(line)).hasMatch()) {
                current.name = m.captured(1);
                if (!copyExpected(current.root, expected))
                    return fail(error, lineNumber, line);
                cases.push_back(current);
            }
        }
        return true;
    }

private:
    CssLayoutCase::Node* at(const QString& number) const { return mNodes.value(number.toInt(), nullptr); }

    static void setExpected(QRectF& rect, const QString& edge, double value)
    {
        if (edge == QLatin1String("CSS_LEFT"))
            rect.moveLeft(value);
        else if (edge == QLatin1String("CSS_TOP"))
            rect.moveTop(value);
        else if (edge == QLatin1String("CSS_WIDTH"))
            rect.setWidth(value);
        else if (edge == QLatin1String("CSS_HEIGHT"))
            rect.setHeight(value);
    }

    static bool copyExpected(CssLayoutCase::Node& input, const CssLayoutCase::Node& expected)
    {
        if (input.children.size() != expected.children.size())
            return false;
        input.expected = expected.expected;
        for (size_t i = 0; i < input.children.size(); ++i) {
            if (!copyExpected(input.children[i], expected.children[i]))
                return false;
        }
        return true;
    }

    static bool fail(QString* error, int lineNumber, const QString& line)
    {
        if (error)
            *error = QStringLiteral("line %1 not understood: %2").arg(lineNumber).arg(line);
        return false;
    }

    bool mInput = true;
    QHash<int, CssLayoutCase::Node*> mNodes;
};
} // namespace

std::vector<CssLayoutCase> loadCssLayoutCases(QString* error)
{
    std::vector<CssLayoutCase> cases;
    QFile file(QString::fromLatin1(kCaseFile));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error)
            *error = QStringLiteral("cannot read %1").arg(file.fileName());
        return cases;
    }
    QTextStream in(&file);
    CaseReader reader;
    if (!reader.read(in, cases, error))
        cases.clear();
    return cases;
}

QSizeF measureCssLayoutCaseText(const QString& text, double width)
{
    if (width < 0)
        width = 1000000;
    if (text == QLatin1String(kSmallText))
        return QSizeF(std::min(kSmallWidth, width), kSmallHeight);
    if (text == QLatin1String(kLongText)) {
        if (width >= kBigWidth)
            return QSizeF(kBigWidth, kSmallHeight);
        return QSizeF(std::max(kBigMinWidth, width), kBigHeight);
    }
    return QSizeF();
}

int cssLayoutEnumValue(const QString& name)
{
#define ORBIS_CSS_ENUMERATOR(name)                                                                           \
    {                                                                                                        \
        QStringLiteral(#name), int(name)                                                                     \
    }
    static const QHash<QString, int> values = {
        ORBIS_CSS_ENUMERATOR(CSS_DIRECTION_INHERIT),
        ORBIS_CSS_ENUMERATOR(CSS_DIRECTION_LTR),
        ORBIS_CSS_ENUMERATOR(CSS_DIRECTION_RTL),
        ORBIS_CSS_ENUMERATOR(CSS_FLEX_DIRECTION_COLUMN),
        ORBIS_CSS_ENUMERATOR(CSS_FLEX_DIRECTION_COLUMN_REVERSE),
        ORBIS_CSS_ENUMERATOR(CSS_FLEX_DIRECTION_ROW),
        ORBIS_CSS_ENUMERATOR(CSS_FLEX_DIRECTION_ROW_REVERSE),
        ORBIS_CSS_ENUMERATOR(CSS_JUSTIFY_FLEX_START),
        ORBIS_CSS_ENUMERATOR(CSS_JUSTIFY_CENTER),
        ORBIS_CSS_ENUMERATOR(CSS_JUSTIFY_FLEX_END),
        ORBIS_CSS_ENUMERATOR(CSS_JUSTIFY_SPACE_BETWEEN),
        ORBIS_CSS_ENUMERATOR(CSS_JUSTIFY_SPACE_AROUND),
        ORBIS_CSS_ENUMERATOR(CSS_ALIGN_AUTO),
        ORBIS_CSS_ENUMERATOR(CSS_ALIGN_FLEX_START),
        ORBIS_CSS_ENUMERATOR(CSS_ALIGN_CENTER),
        ORBIS_CSS_ENUMERATOR(CSS_ALIGN_FLEX_END),
        ORBIS_CSS_ENUMERATOR(CSS_ALIGN_STRETCH),
        ORBIS_CSS_ENUMERATOR(CSS_POSITION_RELATIVE),
        ORBIS_CSS_ENUMERATOR(CSS_POSITION_ABSOLUTE),
        ORBIS_CSS_ENUMERATOR(CSS_NOWRAP),
        ORBIS_CSS_ENUMERATOR(CSS_WRAP),
        ORBIS_CSS_ENUMERATOR(CSS_LEFT),
        ORBIS_CSS_ENUMERATOR(CSS_TOP),
        ORBIS_CSS_ENUMERATOR(CSS_RIGHT),
        ORBIS_CSS_ENUMERATOR(CSS_BOTTOM),
        ORBIS_CSS_ENUMERATOR(CSS_START),
        ORBIS_CSS_ENUMERATOR(CSS_END),
        ORBIS_CSS_ENUMERATOR(CSS_WIDTH),
        ORBIS_CSS_ENUMERATOR(CSS_HEIGHT),
    };
#undef ORBIS_CSS_ENUMERATOR
    return values.value(name, -1);
}
