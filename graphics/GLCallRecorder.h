#pragma once

#include "OrbisUIFrameworkExport.h"

#include "GLFunctions.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

namespace gfx {

// A GLFunctions that counts (and optionally logs) every call that reaches it, then
// forwards it to a target. Without a target it stands in for the driver: commands
// are swallowed, names are handed out in sequence, every shader compiles and links,
// uniforms are found, and queries are answered from values set with setQueryResult().
//
// Install it with GLFunctions::install(); it then sees exactly what the engine lets
// through to the driver.
class ORBIS_UI_INTERNAL_EXPORT GLCallRecorder : public GLFunctions
{
public:
    explicit GLCallRecorder(GLFunctions* target = nullptr) : mTarget(target) {}

#define ORBIS_GL_DECLARE(ret, name, params, args) ret name params override;
    ORBIS_GL_COMMANDS(ORBIS_GL_DECLARE)
    ORBIS_GL_QUERIES(ORBIS_GL_DECLARE)
    ORBIS_GL_EXTENSION_COMMANDS(ORBIS_GL_DECLARE)
#undef ORBIS_GL_DECLARE

    // Calls in order, as "name(arg, arg)"; enums and names print in decimal,
    // pointers as their address in decimal. Off by default (it costs).
    void setLogging(bool on)
    {
        mLogging = on;
    }
    const QStringList& log() const
    {
        return mLog;
    }

    int totalCalls() const
    {
        return mTotal;
    }
    int count(const char* name) const
    {
        return mCounts.value(QByteArray(name));
    }
    void reset();

    // Answers for glGetIntegerv/glGetBooleanv (pname), glGetVertexAttribiv and
    // glGetVertexAttribPointerv (pname + 0x10000 * (index + 1)) when there is no target.
    void setQueryResult(GLenum pname, const QVector<qint64>& values)
    {
        mQueries[pname] = values;
    }
    static GLenum attribQuery(GLuint index, GLenum pname)
    {
        return pname + 0x10000 * (index + 1);
    }
    void setExtensions(const QByteArray& extensions)
    {
        mExtensions = extensions;
    }
    // The answer to glGetString(GL_VERSION); none by default.
    void setVersion(const QByteArray& version)
    {
        mVersion = version;
    }

private:
    template <typename... Args> void note(const char* name, Args... args);
    void fill(GLenum pname, qint64* out, int count) const;

    GLFunctions* mTarget;
    bool mLogging = false;
    QStringList mLog;
    int mTotal = 0;
    QHash<QByteArray, int> mCounts;
    QHash<GLenum, QVector<qint64>> mQueries;
    QByteArray mExtensions;
    QByteArray mVersion;
    GLuint mNextName = 1;
};

} // namespace gfx
