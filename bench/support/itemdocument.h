#pragma once

#include <string>

namespace bench {

/** The element of a query item that has all that an item can have. */
inline std::string ItemElement(unsigned i) {
    const std::string number = std::to_string(i);
    const auto hidden = [](const char* name, const std::string& text) {
        return "<property name=\"" + std::string(name) + "\" type=\"hidden\">" + text + "</property>";
    };
    const std::string id = "6f1b3b68-943e-5e62-9839-" + std::to_string(100000000000 + i);
    return "<queryItem><name locale=\"fr\">Article " + number + "</name><name locale=\"en\">Item " + number +
           "</name><description locale=\"en\">What the business calls item " + number +
           "</description><lastChanged>2007-01-08T10:01:02</lastChanged><screenTip locale=\"en\">Item " + number + "</screenTip>" +
           hidden("qvdbref", "d" + id) + hidden("physicalName", "COLUMN_" + number) + hidden("qvref", "w" + id) + hidden("id", id) +
           hidden("version", "3") + "<expression><refobj>[Layer].[Subject].[Item " + number + "]</refobj> * 2</expression>" +
           "<externalName>COLUMN_" + number + "</externalName><hidden>true</hidden><usage>fact</usage><format>#,##0.00</format>" +
           "<currency>EUR</currency><datatype>decimal</datatype><precision>18</precision><scale>4</scale><size>20</size>" +
           "<nullable>true</nullable><aggregationRule>sum</aggregationRule><displayType>value</displayType><mimeType>text/plain</"
           "mimeType>" +
           "<promptInfo version=\"0\"><promptType>editBox</promptType><promptFilterItemRef>[Layer].[Subject].[Item "
           "0]</promptFilterItemRef>" +
           "</promptInfo><regularAggregate>sum</regularAggregate><semiAggregate>average</semiAggregate>" +
           "<sortOnRef>[Layer].[Subject].[Item 0]</sortOnRef><unSortable>true</unSortable>" +
           "<collationSequenceName>en-US</collationSequenceName><collationSequenceLevel>3</collationSequenceLevel>" +
           "<originalCollationSequenceName>binary</originalCollationSequenceName><originalEncodingName>iso-8859-1</originalEncodingName>" +
           "</queryItem>";
}

/** A model document of subjects with twenty such items each. */
inline std::string ItemDocument(std::size_t bytes) {
    std::string out =
        "<project id=\"items\"><name>items</name><locales><locale>en</locale><locale>fr</locale></locales><defaultLocale>en</defaultLocale>"
        "<namespace><name locale=\"en\">Layer</name>";
    for (unsigned item = 0; out.size() < bytes;) {
        out += "<querySubject><name locale=\"en\">Subject " + std::to_string(item / 20) +
               "</name><definition id=\"\"><modelQuery></modelQuery></definition>";
        for (const unsigned end = item + 20; item < end; ++item) out += ItemElement(item);
        out += "</querySubject>";
    }
    return out + "</namespace></project>";
}

}  // namespace bench
