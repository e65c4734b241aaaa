// Must not compile: the combiner and the datamodel reader stand side by side.
#include "ZRDataModelParserImp.h"
