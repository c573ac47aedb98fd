#include "Singleton.h"

namespace SingletonDetail {
const char* const kLogSource = "../../../utils/Singleton";
}
