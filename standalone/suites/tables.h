#pragma once

#include "host/suites.h"
#include "standalone/suites/older_suites.h"

namespace jostle::standalone {

// The tables that this host hands out, each defined in the file named after its suite; those of outlines and the older
// versions together.
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
extern const AEGP_PersistentDataSuite3 persistentDataSuite;
extern const AEGP_MaskOutlineSuite3 maskOutlineSuite;
extern const AEGP_TextLayerSuite1 textLayerSuite;
extern const PF_PathDataSuite1 pathDataSuite;

extern const AEGP_UtilitySuite7 utilitySuite7;
extern const AEGP_ItemSuite11 itemSuite11;
extern const AEGP_CompSuite11 compSuite11;
extern const AEGP_LayerSuite11 layerSuite11;
extern const AEGP_StreamSuite7 streamSuite7;
extern const AEGP_StreamSuite8 streamSuite8;
extern const AEGP_DynamicStreamSuite2 dynamicStreamSuite2;
extern const AEGP_DynamicStreamSuite3 dynamicStreamSuite3;

} // namespace jostle::standalone
