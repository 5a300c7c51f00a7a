#include <cstdlib>

#include "orvu/BinaryData.h"
#include "orvu/Files.h"
#include "orvu/GingaApps.h"
#include "orvu/Ncl.h"
#include "orvu/Properties.h"
#include "support/ListRules.h"

using namespace Orvu;

namespace OrvuTests {
namespace {

void giveBytes(BinaryData& part)
{
    part.buffer = static_cast<unsigned char*>(std::calloc(3, 1));
    part.bufferSize = 3;
}

/// What an application's parts derive from.
struct OwnPart : BinaryData {
    OwnPart() : BinaryData(DataTypeBinaryDataMultipart) { giveBytes(*this); }
};

BinaryData* newPart()
{
    auto* const part = new BinaryData(DataTypeBinaryDataMultipart);
    giveBytes(*part);
    return part;
}

}  // namespace

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
               R"("files": [], )"),
        needing(childListOf<OwnPart>("BinaryDataMultipartParts", "binaryDataMultipart", &BinaryDataMultipart::parts,
                                     &BinaryDataMultipart::addBinaryData, newPart),
                R"({"serviceContextId": "", "bufferSize": 3, "buffer": "AQID"})",
                R"({"serviceContextId": "", "bufferSize": 1, "buffer": "AQIDBAUG"})")),
    listName);

}  // namespace OrvuTests
