// Must not compile: the encoding services stand on ICU alone.
#include <zrparsexmlr/ZRXPrsUtil.h>
