#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <gtest/gtest.h>

// The messages listed in messages.txt must still be written in the sources that
// log them: applications match log lines, and a reworded message would otherwise
// slip through every test that does not happen to trigger it.

namespace {

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString unescape(const QString& text)
{
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const QChar next = text[++i];
        out += next == 'n' ? QChar('\n') : next == 't' ? QChar('\t') : next;
    }
    return out;
}

// The string literals of a C++ source, unescaped, with adjacent literals joined.
// Comments and character literals are skipped; raw strings are not used here.
QStringList stringLiterals(const QString& source)
{
    QStringList literals;
    bool joinNext = false;
    const int n = source.size();
    for (int i = 0; i < n;) {
        const QChar c = source[i];
        if (c == '/' && i + 1 < n && source[i + 1] == '/') {
            i = source.indexOf('\n', i);
            i = i < 0 ? n : i;
        } else if (c == '/' && i + 1 < n && source[i + 1] == '*') {
            i = source.indexOf(QStringLiteral("*/"), i + 2);
            i = i < 0 ? n : i + 2;
        } else if (c == '\'' || c == '"') {
            int end = i + 1;
            while (end < n && source[end] != c)
                end += source[end] == '\\' ? 2 : 1;
            if (c == '"') {
                const QString literal = unescape(source.mid(i + 1, end - i - 1));
                if (joinNext)
                    literals.last() += literal;
                else
                    literals << literal;
                joinNext = true;
            } else {
                joinNext = false;
            }
            i = end + 1;
        } else {
            if (!c.isSpace())
                joinNext = false;
            ++i;
        }
    }
    return literals;
}

QString withoutBlanks(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("\\s+")));
}

struct Expected
{
    QString kind;
    QString path;
    QString text;
    int line;
};

QList<Expected> expectedMessages()
{
    QList<Expected> entries;
    const QStringList lines =
        readFile(QStringLiteral(ORBIS_SOURCE_DIR "/tests/source/messages.txt")).split('\n');
    static const QRegularExpression entry(QStringLiteral("^(message|prefix|condition) (\\S+) \"(.*)\"$"));
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].isEmpty() || lines[i].startsWith('#'))
            continue;
        const QRegularExpressionMatch match = entry.match(lines[i]);
        EXPECT_TRUE(match.hasMatch()) << "messages.txt:" << i + 1 << " is not an entry";
        if (match.hasMatch())
            entries.append({match.captured(1), match.captured(2), unescape(match.captured(3)), i + 1});
    }
    return entries;
}

} // namespace

TEST(MessageTextTest, LiteralsAreJoinedUnescapedAndCommentsSkipped)
{
    const QString source = QStringLiteral("// \"not this\"\n"
                                          "f('\"', \"a\\\"b\" /* \"nor this\" */ \"c\\n\");\n"
                                          "g(\"x\", \"y\"); h(\"z\")");
    EXPECT_EQ(stringLiterals(source), QStringList({"a\"bc\n", "x", "y", "z"}));
}

TEST(MessageTextTest, EveryListedMessageIsStillWrittenWhereItIsLogged)
{
    const QList<Expected> entries = expectedMessages();
    ASSERT_GT(entries.size(), 50);
    for (const Expected& expected : entries) {
        QString source;
        for (const char* extension : {".cpp", ".h"})
            source += readFile(QStringLiteral(ORBIS_SOURCE_DIR "/") + expected.path + extension) + '\n';
        const QStringList literals = stringLiterals(source);
        bool found = false;
        if (expected.kind == "message") {
            found = literals.contains(expected.text);
        } else if (expected.kind == "prefix") {
            for (const QString& literal : literals)
                found = found || literal.startsWith(expected.text);
        } else {
            found = literals.contains(expected.text) ||
                    withoutBlanks(source).contains("ORBIS_ASSERT(" + withoutBlanks(expected.text) + ",");
        }
        EXPECT_TRUE(found) << "messages.txt:" << expected.line << ": " << expected.path.toStdString()
                           << " no longer has the " << expected.kind.toStdString() << " \""
                           << expected.text.toStdString() << "\"";
    }
}
