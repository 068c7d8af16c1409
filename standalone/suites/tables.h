#pragma once

#include "host/suites.h"

namespace jostle::standalone {

// The tables that this host hands out, each defined in the file named after its suite.
extern const AEGP_RegisterSuite6 registerSuite;
extern const AEGP_CommandSuite1 commandSuite;
extern const AEGP_UtilitySuite11 utilitySuite;
extern const AEGP_MemorySuite1 memorySuite;
extern const AEGP_ProjSuite8 projSuite;
extern const AEGP_ItemSuite13 itemSuite;
extern const AEGP_CompSuite15 compSuite;
extern const AEGP_LayerSuite13 layerSuite;
extern const AEGP_StreamSuite9 streamSuite;
extern const AEGP_DynamicStreamSuite5 dynamicStreamSuite;
extern const AEGP_KeyframeSuite4 keyframeSuite;
extern const AEGP_LayerMaskSuite6 layerMaskSuite;
extern const AEGP_CollectionSuite2 collectionSuite;
extern const AEGP_FootageSuite11 footageSuite;

} // namespace jostle::standalone
