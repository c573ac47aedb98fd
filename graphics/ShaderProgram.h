#pragma once

#include "OrbisUIFrameworkExport.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>
#include <qopengl.h>

class QColor;
class QMatrix4x4;
class QVector4D;

namespace gfx {

/// A linked GLSL ES 1.00 program with attribute 0 "aPosition", 1 "aTexCoord" and
/// 2 "aColor".
/// Uniform locations are looked up once; setters ignore uniforms the program lacks,
/// so that custom shaders may use any subset, and values the program already holds.
class ORBIS_UI_EXPORT ShaderProgram
{
public:
    ShaderProgram(const QString& name, const QByteArray& vertexSource, const QByteArray& fragmentSource);
    /// Forgets the GL name without deleting it: the context may be gone already.
    ~ShaderProgram() = default;
    /// Deletes the GL program (the context must be current).
    void release();
    ShaderProgram(const ShaderProgram&) = delete;
    ShaderProgram& operator=(const ShaderProgram&) = delete;

    bool isValid() const { return mProgram != 0; }
    GLuint id() const { return mProgram; }
    const QString& name() const { return mName; }

    GLint uniformLocation(const char* name);
    void setUniform(const char* name, int value);
    void setUniform(const char* name, float value);
    /// Premultiplies the colour and scales it by `opacity`.
    void setUniform(const char* name, const QColor& color, float opacity);
    void setUniform(const char* name, const QMatrix4x4& matrix);
    void setUniform(const char* name, const QVector4D& value);

private:
    GLuint compile(GLenum type, const QByteArray& source);
    /// Records the value; false when the location is absent or already holds it.
    bool changes(GLint location, const float* values, int count);

    QString mName;
    GLuint mProgram = 0;
    QHash<QByteArray, GLint> mLocations;
    QHash<GLint, QVector<float>> mValues;
};

} // namespace gfx
