// The XML form of OmBsdlData, which rides in the setup file. Attributes other than the instruction
// and boundary length do not survive it.
#pragma once

class OmBsdlData;
class wxXmlNode;

// Fills `node`, an element named "BSDL".
void SaveBsdlXml(wxXmlNode& node, const OmBsdlData& data);

// Fills `data`, which must be fresh. False if anything required is missing or wrong; the caller
// throws `data` away.
bool LoadBsdlXml(const wxXmlNode& node, OmBsdlData& data);

// Whether a parsed file can be stored and restored; `copy` receives what came back.
bool CheckBsdlContent(const OmBsdlData& source, OmBsdlData& copy);
