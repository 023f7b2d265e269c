// SPDX-License-Identifier: MIT
#pragma once

// The formats that the second opinion knows: one function each. All have the same contract: the signature of the format
// stands in the head, which may end anywhere behind it, and the size may be any number. The layout stands with the
// function.

#include <cstdint>

#include "testing/second_opinion/bytes.h"
#include "testing/second_opinion/doubt.h"

namespace quillon {

// Containers of chunks.
[[nodiscard]] Opinion riffOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion rf64Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion iffOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion djvuOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dsdiffOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dsfOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion wave64Opinion(Bytes head, std::uint64_t size);

// Containers of boxes.
[[nodiscard]] Opinion isoMediaOpinion(Bytes head, std::uint64_t size);

// Pictures.
[[nodiscard]] Opinion bitmapOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion iconOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion appleIconOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion photoshopOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dpxOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion sunRasterOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion enhancedMetafileOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion colourProfileOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion walkChunks(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion pngOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion animatedPngOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion jpegOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion gifOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion tiffOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion fujifilmOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion minoltaOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion codestreamOpinion(Bytes head, std::uint64_t size);

// Films and sound.
[[nodiscard]] Opinion matroskaOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion asfOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion flashVideoOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion transportStreamOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion timedStreamOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dvdVideoOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dvdInformationOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion materialExchangeOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion realMediaOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion flicOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion layer3At(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion id3Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion layer3Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion flacOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion oggOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion sunSoundOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion coreAudioOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion midiOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion monkeyAudioOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion wavPackOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion voiceOpinion(Bytes head, std::uint64_t size);

// Archives and packed files.
[[nodiscard]] Opinion zipOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion emptyZipOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion sevenZipOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion cabinetOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion rar5Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion rar4Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion arjOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion lhaOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion gzipOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion bzip2Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion xzOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion lz4Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion zstandardOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion tarOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion arOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion xarOpinion(Bytes head, std::uint64_t size);

// Documents, databases, mail.
[[nodiscard]] Opinion pdfOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dicomOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion mobileBookOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion postScriptOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion compoundFileOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion sqliteOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion accessOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dbaseOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion extensibleStorageOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion shapeOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion mailStoreOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion expressMailOpinion(Bytes head, std::uint64_t size);

// Drawings, models, measurements.
[[nodiscard]] Opinion drawingOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion metafileOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion sceneOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion studioOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion hierarchicalDataOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion pointCloudOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion scanOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion gribOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion bufrOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion gameDataOpinion(Bytes head, std::uint64_t size);

// Fonts.
[[nodiscard]] Opinion fontOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion fontCollectionOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion webFontOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion embeddedFontOpinion(Bytes head, std::uint64_t size);

// Programs.
[[nodiscard]] Opinion windowsProgramOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion elfOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion machOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion fatProgramOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dexOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion flashOpinion(Bytes head, std::uint64_t size);

// Images of disks.
[[nodiscard]] Opinion vhdOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion vhdxOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion vmdkOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion qcow2Opinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion vdiOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion windowsImageOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion squashfsOpinion(Bytes head, std::uint64_t size);

// What Windows keeps of itself.
[[nodiscard]] Opinion hiveOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion eventLogOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion oldEventLogOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion linkOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion oldHelpOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion helpOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion dumpOpinion(Bytes head, std::uint64_t size);
[[nodiscard]] Opinion notebookOpinion(Bytes head, std::uint64_t size);

// Whether a head with a short signature is one of the format.
[[nodiscard]] bool isDbaseTable(Bytes head);
[[nodiscard]] bool isFont(Bytes head);
[[nodiscard]] bool isIcon(Bytes head);
[[nodiscard]] bool isTimedStream(Bytes head);
[[nodiscard]] bool isTransportStream(Bytes head);

}  // namespace quillon
