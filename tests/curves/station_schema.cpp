#include "curves/station_schema.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlschemas.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>

namespace triglub_curves {

namespace {

using Schema = std::unique_ptr<xmlSchema, decltype(&xmlSchemaFree)>;

std::string path_of(const std::string& version) {
  return TRIGLUB_SOURCE_DIR "/../shared/schemas/fdsn-station-" + version + ".xsd";
}

Schema read_schema(const std::string& version) {
  xmlSchemaParserCtxt* parser = xmlSchemaNewParserCtxt(path_of(version).c_str());
  Schema schema(xmlSchemaParse(parser), &xmlSchemaFree);
  xmlSchemaFreeParserCtxt(parser);
  if (schema == nullptr) throw std::runtime_error("the schema is not read: " + path_of(version));
  return schema;
}

xmlSchema* schema_of(const std::string& version) {
  static std::map<std::string, Schema> read;
  const auto known = read.find(version);
  if (known != read.end()) return known->second.get();
  return read.emplace(version, read_schema(version)).first->second.get();
}

void note(void* faults, xmlError* error) {
  *static_cast<std::string*>(faults) += std::to_string(error->line) + ": " + error->message;
}

}  // namespace

bool has_schema(const std::string& version) { return std::filesystem::exists(path_of(version)); }

std::string faults_of(const std::string& document, const std::string& version) {
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
      xmlReadMemory(document.data(), static_cast<int>(document.size()), "document", nullptr, XML_PARSE_NONET),
      &xmlFreeDoc);
  if (tree == nullptr) throw std::runtime_error("the document is not well-formed");
  const std::unique_ptr<xmlSchemaValidCtxt, decltype(&xmlSchemaFreeValidCtxt)> validation(
      xmlSchemaNewValidCtxt(schema_of(version)), &xmlSchemaFreeValidCtxt);
  std::string faults;
  xmlSchemaSetValidStructuredErrors(validation.get(), &note, &faults);
  const bool is_valid = xmlSchemaValidateDoc(validation.get(), tree.get()) == 0;
  return is_valid || !faults.empty() ? faults : "not valid";
}

}  // namespace triglub_curves
