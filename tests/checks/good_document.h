// A document that no rule has anything against, to be broken in one place.
#ifndef TRIGLUB_TESTS_CHECKS_GOOD_DOCUMENT_H
#define TRIGLUB_TESTS_CHECKS_GOOD_DOCUMENT_H

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace triglub_test {

// Channels: a broadband one with poles and zeros, a gain, an even chain of digital stages; a microphone with a list; a
// log without samples.
inline constexpr std::string_view kGoodDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<FDSNStationXML xmlns="http://www.fdsn.org/xml/station/1" xmlns:other="http://example.org/other" schemaVersion="1.2">
 <Source>test</Source>
 <Created>2020-01-01T00:00:00Z</Created>
 <Network code="XA" startDate="2000-01-01T00:00:00Z" other:code="?">
  <Description>&lt;good&gt; &#x4e; <![CDATA[<Latitude>999</Latitude>]]></Description>
  <TotalNumberStations>2</TotalNumberStations>
  <SelectedNumberStations>1</SelectedNumberStations>
  <Station code="GOOD" startDate="2001-01-01T00:00:00Z" endDate="2010-01-01T00:00:00Z">
   <other:Latitude>999</other:Latitude>
   <Latitude unit="DEGREES">10</Latitude>
   <Longitude>20</Longitude>
   <Elevation>100</Elevation>
   <Site><Name>Somewhere</Name></Site>
   <TotalNumberChannels>3</TotalNumberChannels>
   <SelectedNumberChannels>3</SelectedNumberChannels>
   <Channel code="HHZ" startDate="2001-01-01T00:00:00Z" endDate="2005-06-01T12:00:00.5Z" locationCode="00">
    <Latitude>10.001</Latitude>
    <Longitude>20.001</Longitude>
    <Elevation>90</Elevation>
    <Depth>10</Depth>
    <Azimuth>0</Azimuth>
    <Dip>-90</Dip>
    <SampleRate>100</SampleRate>
    <Sensor><Description>broadband</Description></Sensor>
    <Response>
     <InstrumentSensitivity>
      <Value>1.2e9</Value>
      <Frequency>5</Frequency>
      <InputUnits><Name>m/s</Name></InputUnits>
      <OutputUnits><Name>count</Name></OutputUnits>
     </InstrumentSensitivity>
     <Stage number="1">
      <PolesZeros>
       <InputUnits><Name>M/S</Name></InputUnits>
       <OutputUnits><Name>V</Name></OutputUnits>
       <PzTransferFunctionType>LAPLACE (RADIANS/SECOND)</PzTransferFunctionType>
       <NormalizationFactor>1.0007980</NormalizationFactor>
       <NormalizationFrequency>5</NormalizationFrequency>
       <Zero number="0"><Real>0</Real><Imaginary>0</Imaginary></Zero>
       <Zero number="1"><Real>0</Real><Imaginary>0</Imaginary></Zero>
       <Pole number="2"><Real>-4.44</Real><Imaginary>4.44</Imaginary></Pole>
       <Pole number="3"><Real>-4.44</Real><Imaginary>-4.44</Imaginary></Pole>
      </PolesZeros>
      <StageGain><Value>1500</Value><Frequency>5</Frequency></StageGain>
     </Stage>
     <Stage number="2">
      <StageGain><Value>2</Value><Frequency>5</Frequency></StageGain>
     </Stage>
     <Stage number="3">
      <Coefficients>
       <InputUnits><Name>V</Name></InputUnits>
       <OutputUnits><Name>count</Name></OutputUnits>
       <CfTransferFunctionType>DIGITAL</CfTransferFunctionType>
       <Numerator number="1">0.25</Numerator>
       <Numerator number="2">0.75</Numerator>
      </Coefficients>
      <Decimation>
       <InputSampleRate>800</InputSampleRate>
       <Factor>2</Factor>
       <Offset>1</Offset>
       <Delay>0</Delay>
       <Correction>0</Correction>
      </Decimation>
      <StageGain><Value>400000</Value><Frequency>5</Frequency></StageGain>
     </Stage>
     <Stage number="4">
      <FIR>
       <InputUnits><Name>count</Name></InputUnits>
       <OutputUnits><Name>count</Name></OutputUnits>
       <Symmetry>ODD</Symmetry>
       <NumeratorCoefficient i="1">0.1</NumeratorCoefficient>
       <NumeratorCoefficient i="2">0.2</NumeratorCoefficient>
       <NumeratorCoefficient i="3">0.4</NumeratorCoefficient>
      </FIR>
      <Decimation>
       <InputSampleRate>400</InputSampleRate>
       <Factor>4</Factor>
       <Offset>0</Offset>
       <Delay>0.005</Delay>
       <Correction>0.005</Correction>
      </Decimation>
      <StageGain><Value>1</Value><Frequency>0</Frequency></StageGain>
     </Stage>
    </Response>
   </Channel>
   <Channel code="HDF" startDate="2002-01-01T00:00:00Z" endDate="2010-01-01T00:00:00Z" locationCode="">
    <Latitude>10</Latitude>
    <Longitude>20</Longitude>
    <Elevation>100</Elevation>
    <Depth>0</Depth>
    <SampleRate>80</SampleRate>
    <Response>
     <InstrumentSensitivity>
      <Value>10</Value>
      <Frequency>1</Frequency>
      <InputUnits><Name>Pa</Name></InputUnits>
      <OutputUnits><Name>counts</Name></OutputUnits>
     </InstrumentSensitivity>
     <Stage number="1">
      <ResponseList>
       <InputUnits><Name>Pa</Name></InputUnits>
       <OutputUnits><Name>COUNTS</Name></OutputUnits>
       <ResponseListElement><Frequency>0.1</Frequency><Amplitude>0.5</Amplitude><Phase>0</Phase></ResponseListElement>
       <ResponseListElement><Frequency>1</Frequency><Amplitude>1</Amplitude><Phase>0</Phase></ResponseListElement>
       <ResponseListElement><Frequency>10</Frequency><Amplitude>2</Amplitude><Phase>0</Phase></ResponseListElement>
      </ResponseList>
      <StageGain><Value>20</Value><Frequency>10</Frequency></StageGain>
     </Stage>
    </Response>
   </Channel>
   <Channel code="ACE" startDate="2002-01-01T00:00:00Z" endDate="2009-01-01T00:00:00Z" locationCode="">
    <Latitude>10</Latitude>
    <Longitude>20</Longitude>
    <Elevation>100</Elevation>
    <Depth>0</Depth>
    <SampleRate>0</SampleRate>
   </Channel>
  </Station>
 </Network>
</FDSNStationXML>
)";

// The document with the first `from` behind `behind` replaced. Fails the test when there is none, and never gives a
// document that is the same.
inline std::string replaced(std::string document, std::string_view behind, std::string_view from, std::string_view to) {
  const std::size_t begin = document.find(behind);
  const std::size_t at = begin == std::string::npos ? begin : document.find(from, begin);
  if (at == std::string::npos || from == to) {
    ADD_FAILURE() << "nothing to replace: " << behind << " ... " << from;
    return document;
  }
  return document.replace(at, from.size(), to);
}

}  // namespace triglub_test

#endif
