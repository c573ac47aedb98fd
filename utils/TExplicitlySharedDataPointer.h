#pragma once

#include <QExplicitlySharedDataPointer>

/// The framework's explicitly shared pointer (display lists, tile tasks): copies
/// share one object and never detach unless asked to.
template <typename T> using TExplicitlySharedDataPointer = QExplicitlySharedDataPointer<T>;
