// The example job: usage  zrx_example DATA_DIR OUT_DIR
// Reads the data set description and the job settings, then combines the
// models of a split analysis into one PMML document.
#include "steps.h"

#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    const std::string dataDir = argc > 1 ? argv[1] : "examples";
    const std::string outDir = argc > 2 ? argv[2] : ".";
    const std::string data = dataDir + "/data";
    int rc = DataModelStep(data, std::cout);
    if (rc == 0)
        rc = SettingsStep(data, std::cout);
    if (rc == 0)
        rc = CombineStep(data, outDir, std::cout);
    std::cout << (rc == 0 ? "example job done\n" : "example job failed\n");
    return rc;
}
