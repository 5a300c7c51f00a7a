#include "orvu/Files.h"
#include "orvu/GingaApps.h"
#include "orvu/Ncl.h"
#include "orvu/Properties.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Ginga, AListOfChildren,
    testing::Values(
        childList("GingaAppListApps", "apps", &GingaAppList::apps, &GingaAppList::addGingaApp),
        optionalList(childList("NCLNodeInterfaces", "interfaces", &NCLNode::interfaces, &NCLNode::addInterface)),
        childList("NCLNodeListNodes", "nodes", &NCLNodeList::nodes, &NCLNodeList::addNode),
        childList("NodeProperties", "nodeProperties", &NodeProperties::properties, &NodeProperties::addProperty),
        childList("PersistentProperties", "persistent", &PersistentProperties::properties,
                  &PersistentProperties::addProperty),
        beside(childList("GingaFileListFiles", "files", &GingaFileList::files, &GingaFileList::addFile),
               R"("dirs": [], )"),
        beside(childList("GingaFileListDirs", "dirs", &GingaFileList::dirs, &GingaFileList::addDir),
               R"("files": [], )"),
        beside(childList("DsmccFileListFiles", "files", &DsmccFileList::files, &DsmccFileList::addFile),
               R"("dirs": [], )"),
        beside(childList("DsmccFileListDirs", "dirs", &DsmccFileList::dirs, &DsmccFileList::addDir),
               R"("files": [], )")),
    listName);

}  // namespace OrvuTests
