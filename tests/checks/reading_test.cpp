// Documents that are none, are spoilt, or mean harm.
#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>

#include "checks/good_document.h"
#include "document_checks.h"

namespace triglub {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using triglub_test::kGoodDocument;
using triglub_test::replaced;

const std::string kRoot = "<FDSNStationXML xmlns=\"http://www.fdsn.org/xml/station/1\">";

std::vector<std::string> codes_of(const std::string& text) {
  std::vector<std::string> codes;
  for (const DocumentFinding& finding : check_document_text(text)) codes.emplace_back(finding.code);
  return codes;
}

TEST(Reading, WhatIsNoXmlIsOneError) {
  const std::vector<std::string> texts = {"",
                                          "\n",
                                          "network XA\n",
                                          "<",
                                          std::string(100000, '<'),
                                          std::string(5, '\0'),
                                          "\xff\xfe<",
                                          kRoot,
                                          kRoot + "\xc3</FDSNStationXML>",
                                          kRoot + "<Network code='XA'",
                                          kRoot + "&what;"};
  for (const std::string& text : texts) {
    EXPECT_THAT(codes_of(text), ElementsAre("not-xml")) << text.substr(0, 50);
  }
}

TEST(Reading, ATagThatWouldKeepTheParserIsNotReadOn) {
  std::string attributes;
  for (int i = 0; i < 200000; ++i) attributes += " a" + std::to_string(i) + "='1'";
  const auto findings = check_document_text(kRoot + "<Network" + attributes + "/></FDSNStationXML>");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].code, "not-xml");
  EXPECT_THAT(findings[0].text, HasSubstr("a tag of more than 65536 bytes"));
}

TEST(Reading, ATagDoesNotEndWithinAValue) {
  for (const char* value : {"='>'", "='\">'", "=\"'>\""}) {
    std::string attributes;
    for (int i = 0; i < 10000; ++i) attributes.append(" a").append(std::to_string(i)).append(value);
    const auto findings = check_document_text(kRoot + "<Network" + attributes + "/></FDSNStationXML>");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0].text, HasSubstr("a tag of more than 65536 bytes")) << value;
  }
}

TEST(Reading, WhatIsNoTagMayBeLong) {
  const std::string much(200000, 'x');
  for (const std::string& what : {"<!-- a > b's <i " + much + "- ->-->", "<![CDATA[ <a ' " + much + "]] ]]]>",
                                  "<?pi ' < " + much + "? ?>", much, "<a>it's</a>" + much}) {
    EXPECT_THAT(codes_of(replaced(std::string(kGoodDocument), "", "<Network", what + "<Network")), ElementsAre())
        << what.substr(0, 20);
  }
}

TEST(Reading, AnErrorOfXmlHasItsLineAndItsReason) {
  const auto findings = check_document_text(kRoot + "\n\n</other>");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].line, 3);
  EXPECT_EQ(findings[0].path, "");
  EXPECT_THAT(findings[0].text, HasSubstr("mismatch"));
  EXPECT_EQ(findings[0].text.find('\n'), std::string::npos);
}

TEST(Reading, FindingsBeforeAnErrorOfXmlStay) {
  std::string text = replaced(std::string(kGoodDocument), "code=\"HHZ\"", "<Dip>-90<", "<Dip>-91<");
  EXPECT_THAT(codes_of(text.substr(0, text.find("code=\"ACE\""))), ElementsAre("orientation-range", "not-xml"));
}

TEST(Reading, OtherDocumentsAreOneError) {
  for (const std::string text :
       {"<html/>", "<FDSNStationXML><Network/></FDSNStationXML>", "<FDSNStationXML xmlns='http://example.org/1'/>",
        "<q:quakeml xmlns:q='http://quakeml.org/xmlns/quakeml/1.2'><a></b></q:quakeml>"}) {
    EXPECT_THAT(codes_of(text), ElementsAre("not-stationxml")) << text;
  }
}

TEST(Reading, ANamespacePrefixMakesNoDifference) {
  EXPECT_THAT(codes_of("<s:FDSNStationXML xmlns:s='http://www.fdsn.org/xml/station/1'><s:Network code='xa'/>"
                       "<Network code='xb'/></s:FDSNStationXML>"),
              ElementsAre("code-format"));
}

TEST(Reading, EncodingsAreUnderstood) {
  EXPECT_THAT(
      codes_of("<?xml version='1.0' encoding='ISO-8859-1'?>" + kRoot + "<Source>\xe9</Source></FDSNStationXML>"),
      ElementsAre());
  std::string wide = "\xff\xfe";
  for (const char c : kRoot + "<Network code='xa'/></FDSNStationXML>") wide.append({c, '\0'});
  EXPECT_THAT(codes_of(wide), ElementsAre("code-format"));
}

TEST(Reading, ADocumentTypeEndsItBeforeEntitiesGrow) {
  std::string laughs = "<!DOCTYPE FDSNStationXML [<!ENTITY a0 \"ha\">";
  for (int i = 1; i < 50; ++i) {
    const std::string one = "&a" + std::to_string(i - 1) + ";";
    laughs.append("<!ENTITY a").append(std::to_string(i)).append(" \"");
    laughs.append(one).append(one).append(one).append(one).append("\">");
  }
  EXPECT_THAT(codes_of(laughs + "]>" + kRoot + "<Network code='&a49;'/>&a49;</FDSNStationXML>"),
              ElementsAre("document-type"));
  EXPECT_THAT(codes_of("<!DOCTYPE a SYSTEM 'file:///etc/hostname'>" + kRoot + "</FDSNStationXML>"),
              ElementsAre("document-type"));
  EXPECT_THAT(codes_of("<!DOCTYPE a [<!ENTITY % p SYSTEM 'http://127.0.0.1:9/'> %p;]>" + kRoot + "</FDSNStationXML>"),
              ElementsAre("document-type"));
}

TEST(Reading, DepthHasALimit) {
  std::string deep = kRoot + "<Network code='XA'><Station code='A'><Channel code='LDO'>";
  for (int i = 0; i < 100000; ++i) deep += "<Response>";
  EXPECT_THAT(codes_of(deep).back(), "not-xml");
}

TEST(Reading, DepthThatIsAllowedIsReadToItsEnd) {
  std::string deep = kRoot +
                     "<Network code='XA'><Station code='A' startDate='2000-01-01T00:00:00Z'>"
                     "<Latitude>0</Latitude><Longitude>0</Longitude><Elevation>0</Elevation>";
  for (int i = 0; i < 200; ++i) deep += "<Response>";
  deep += "<Depth>x</Depth>";
  for (int i = 0; i < 200; ++i) deep += "</Response>";
  EXPECT_THAT(codes_of(deep + "</Station></Network></FDSNStationXML>"), ElementsAre("number"));
}

TEST(Reading, AChannelTooLargeIsToldOnce) {
  std::string long_list;
  for (int i = 0; i < 1'000'100; ++i) long_list += "<Numerator>0</Numerator>";
  const std::string text = replaced(std::string(kGoodDocument), "<Stage number=\"3\">", "<Numerator number=\"1\">",
                                    long_list + "<Numerator>");
  const auto codes = codes_of(text);
  EXPECT_EQ(std::count(codes.begin(), codes.end(), "too-large"), 1);
}

TEST(Reading, TooManyRootsAreTold) {
  std::string zeros;
  for (int i = 0; i < 999; ++i) zeros += "<Zero><Real>0</Real><Imaginary>0</Imaginary></Zero>";
  const auto codes = codes_of(replaced(std::string(kGoodDocument), "<Stage number=\"1\">", "<Pole ", zeros + "<Pole "));
  EXPECT_THAT(codes, testing::Contains("too-large"));
}

TEST(Reading, TextsOfAnyLengthDoNoHarm) {
  const std::string text =
      replaced(std::string(kGoodDocument), "code=\"HHZ\"", "<Dip>", "<Dip>" + std::string(1 << 20, '1'));
  const auto findings = check_document_text(text);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].code, "orientation-range");
}

TEST(Reading, LinesAreCountedBeyondSixteenBits) {
  const std::string text = kRoot + std::string(200000, '\n') + "<Network\n code='xa'/></FDSNStationXML>";
  const auto findings = check_document_text(text);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].line, 200002);
}

TEST(Reading, PartsAreCounted) {
  std::istringstream document(replaced(std::string(kGoodDocument), "code=\"HHZ\"", "<Dip>-90<", "<Dip>-91<"));
  const DocumentCounts counts = check_document(document, [](const DocumentFinding& /*finding*/) {});
  EXPECT_EQ(counts.networks, 1U);
  EXPECT_EQ(counts.stations, 1U);
  EXPECT_EQ(counts.channels, 3U);
  EXPECT_EQ(counts.errors, 1U);
  EXPECT_EQ(counts.warnings, 0U);
}

// Without any stage in the document, a channel without them is as the others.
TEST(Reading, ADocumentWithoutStagesMissesNone) {
  std::string text(kGoodDocument);
  for (std::size_t at = 0; (at = text.find("<Stage ")) != std::string::npos;) {
    text.erase(at, text.find("</Stage>", at) + 8 - at);
  }
  EXPECT_THAT(codes_of(text), ElementsAre());
}

TEST(Reading, WhatTheSinkThrowsIsPassedOn) {
  std::istringstream document(kRoot + "<Network code='xa'/></FDSNStationXML>");
  EXPECT_THROW(check_document(document, [](const DocumentFinding& /*finding*/) { throw std::out_of_range("full"); }),
               std::out_of_range);
}

// Gives a part of the document, and then fails.
class FailingBuffer : public std::streambuf {
 public:
  explicit FailingBuffer(std::string text) : text_(std::move(text)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("no more"); }

 private:
  std::string text_;
};

TEST(Reading, AStreamThatFailsIsAnException) {
  FailingBuffer buffer(kRoot + "<Network code='XA'>");
  std::istream document(&buffer);
  EXPECT_THROW(check_document(document, [](const DocumentFinding& /*finding*/) {}), std::runtime_error);
}

}  // namespace
}  // namespace triglub
