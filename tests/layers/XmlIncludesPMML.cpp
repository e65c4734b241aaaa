// Must not compile: the xml layer lies below pmml and can't see its headers.
#include "ZRPMMLInternal.h"
