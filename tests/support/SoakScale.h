#pragma once

// Soak tests run short in the ordinary suite and long when ORBIS_SOAK=long is set
// (before a release, or after a change to the code a soak covers).
int soakCount(int shortCount, int longCount);
bool soakIsLong();
