#include "persistence/settings_writer.h"

#include <tinyxml2.h>

#include "persistence/attribute_tables.h"
#include "persistence/number_text.h"

namespace jostle {

namespace {

using tinyxml2::XMLPrinter;

void writeInteger(XMLPrinter& printer, const char* name, std::int32_t value) {
    printer.PushAttribute(name, integerText(value).c_str());
}

template<class Record>
void writeAttributes(XMLPrinter& printer, std::span<const Attribute<Record>> table, const Record& record) {
    for (const Attribute<Record>& row : table) {
        const double value = row.read(record);
        const std::string text =
            row.form == AttributeForm::Real ? realText(value) : integerText(static_cast<std::int32_t>(value));
        printer.PushAttribute(row.name.data(), text.c_str());
    }
}

template<class Record>
void writeSection(XMLPrinter& printer, const char* name, std::span<const Attribute<Record>> table,
                  const Record& record) {
    printer.OpenElement(name);
    writeAttributes(printer, table, record);
    printer.CloseElement();
}

void writeBodies(XMLPrinter& printer, std::span<const BodyRecord> bodies) {
    printer.OpenElement("bodies");
    for (const BodyRecord& body : bodies) {
        printer.OpenElement("body");
        writeInteger(printer, "layerID", body.layerID);
        writeAttributes(printer, bodyAttributes(), body);
        printer.CloseElement();
    }
    printer.CloseElement();
}

/// -1 for a joint that names no body.
std::int32_t layerOf(std::span<const BodyRecord> bodies, std::int32_t index) {
    return index >= 0 && static_cast<std::size_t>(index) < bodies.size()
               ? bodies[static_cast<std::size_t>(index)].layerID
               : -1;
}

void writeJoints(XMLPrinter& printer, std::span<const JointRecord> joints, std::span<const BodyRecord> bodies) {
    printer.OpenElement("joints");
    for (const JointRecord& joint : joints) {
        printer.OpenElement("joint");
        writeInteger(printer, "type", static_cast<std::int32_t>(joint.type));
        writeInteger(printer, "bodyAId", joint.bodyAId);
        writeInteger(printer, "bodyBId", joint.bodyBId);
        writeInteger(printer, "bodyALayerID", layerOf(bodies, joint.bodyAId));
        writeInteger(printer, "bodyBLayerID", layerOf(bodies, joint.bodyBId));
        writeAttributes(printer, jointAttributes(joint.type), joint);
        printer.CloseElement();
    }
    printer.CloseElement();
}

void writeSetup(XMLPrinter& printer, const PreviewProperties& preview, const GlobalProperties& globals,
                std::span<const BodyRecord> bodies, std::span<const JointRecord> joints) {
    writeSection(printer, "preview", previewAttributes(), preview);
    writeSection(printer, "solver", solverAttributes(), globals);
    writeSection(printer, "gravity", gravityAttributes(), globals);
    writeBodies(printer, bodies);
    writeJoints(printer, joints, bodies);
}

} // namespace

std::string settingsText(const Scene& scene, std::span<const SnapshotStrip::Item> snapshots) {
    XMLPrinter printer;
    printer.PushDeclaration("xml version=\"1.0\"");
    printer.OpenElement("JostleSettings");
    writeInteger(printer, "majorVersion", settingsMajorVersion);
    writeInteger(printer, "minorVersion", settingsMinorVersion);
    writeSetup(printer, scene.preview, scene.globals, scene.bodies, scene.joints);
    printer.OpenElement("presets");
    for (const SnapshotStrip::Item& item : snapshots) {
        const QuickPreset& preset = item.preset;
        printer.OpenElement("preset");
        writeSetup(printer, preset.preview, preset.globals, preset.bodies, preset.joints);
        printer.CloseElement();
    }
    printer.CloseElement();
    printer.CloseElement();
    return {printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1};
}

} // namespace jostle
