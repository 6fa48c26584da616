#include "tools/sample_articles.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace demovex::tools {
namespace {

// A family of articles that differ in two properties, whose values the lists name separated by "|".
// In the name {a} and {b} stand for them. The price rises by a step for each value further on.
struct Family {
    const wchar_t* name;
    const wchar_t* a;
    const wchar_t* b;
    int price;
    int a_step;
    int b_step;
};

struct Group {
    int thousand;  // first digit of the numbers
    const wchar_t* heading;
    std::vector<Family> families;
};

const std::vector<Group>& Groups() {
    static const std::vector<Group> groups = {
        {1,
         L"Schrauben und Dübel",
         {
             {L"Holzschraube {a}x{b} verzinkt", L"3|3,5|4|4,5|5|6", L"20|30|40|50|60|80", 29, 6, 4},
             {L"Spanplattenschraube {a}x{b}", L"3|3,5|4|4,5|5|6", L"16|25|35|45|60|80", 25, 5, 4},
             {L"Sechskantschraube M{a}x{b}", L"5|6|8|10|12|16", L"20|30|40|60|80|100", 34, 12, 5},
             {L"Zylinderschraube M{a}x{b}", L"3|4|5|6|8", L"10|16|20|30|40|50", 31, 7, 3},
             {L"Dübel {a} mm, {b} Stück", L"5|6|8|10|12|14", L"10|25|50|100", 12, 6, 18},
             {L"Beilagscheibe M{a} {b}", L"4|5|6|8|10|12", L"verzinkt|Messing|Edelstahl", 9, 2, 11},
             {L"Mutter M{a} {b}", L"4|5|6|8|10|12|16", L"verzinkt|Messing|Edelstahl", 8, 3, 12},
             {L"Drahtstift {a}x{b} blank", L"1,8|2,2|2,8|3,1", L"30|40|55|65|80", 19, 4, 3},
         }},
        {2,
         L"Beschläge und Schlösser",
         {
             {L"Möbelgriff {a} mm {b}", L"64|96|128|160|192", L"Chrom|Messing|Nickel|schwarz|weiß",
              49, 14, 9},
             {L"Scharnier {a} mm {b}", L"40|50|60|80|100", L"verzinkt|Messing|Edelstahl", 22, 8,
              17},
             {L"Hangschloss {a} mm {b}", L"20|30|40|50|60", L"gleich|verschieden", 79, 38, 10},
             {L"Türdrücker {a} {b}", L"Modell A|Modell B|Modell C|Modell D",
              L"Alu|Chrom|Messing|Edelstahl", 249, 60, 85},
             {L"Zylinder {a}/{b} mm", L"30|35|40|45|50", L"30|35|40|45|50", 290, 25, 25},
             {L"Winkel {a}x{b} verzinkt", L"40|60|80|100|120", L"30|40|50|60", 15, 7, 4},
             {L"Regalträger {a} cm {b}", L"15|20|25|30|40|50", L"weiß|schwarz|silber|braun", 39, 12,
              3},
             {L"Ladenführung {a} cm {b}", L"30|35|40|45|50|55", L"Teil|Vollauszug", 98, 14, 110},
             {L"Möbelrolle {a} mm {b}", L"30|40|50|75|100", L"starr|lenkbar|mit Bremse", 42, 19,
              15},
             {L"Haken {a} mm {b}", L"20|30|40|60|80", L"verzinkt|Messing|weiß|schwarz", 9, 4, 6},
             {L"Riegel {a} mm {b}", L"50|80|100|120|150", L"verzinkt|Messing|Edelstahl", 29, 11,
              24},
             {L"Gasfeder {a} mm {b} N", L"244|355|500|585", L"100|200|400|600", 189, 24, 15},
         }},
        {3,
         L"Elektromaterial",
         {
             {L"Glühlampe {a} W {b}", L"15|25|40|60|75|100", L"E14 klar|E14 matt|E27 klar|E27 matt",
              14, 2, 1},
             {L"Leuchtröhre {a} W {b}", L"8|13|18|36|58", L"warmweiß|neutralweiß|tageslicht", 45,
              17, 6},
             {L"Mantelleitung {a} mm², {b} m", L"3x1,5|3x2,5|5x1,5|5x2,5", L"5|10|25|50|100", 69,
              55, 210},
             {L"Litze {a} mm² {b} 10 m", L"0,75|1,5|2,5|4|6", L"schwarz|blau|rot|braun|grün-gelb",
              38, 17, 0},
             {L"Steckdose {a} {b}", L"1-fach|2-fach|3-fach", L"weiß|cremeweiß|braun|anthrazit", 59,
              48, 12},
             {L"Schalter {a} {b}", L"Aus|Wechsel|Kreuz|Serien|Taster", L"weiß|cremeweiß|braun", 64,
              19, 11},
             {L"Verlängerung {a} m {b}", L"2|3|5|10|25", L"weiß|schwarz|orange", 79, 58, 5},
             {L"Automat {a} A {b}", L"6|10|13|16|20|25|32", L"B 1-polig|C 1-polig|B 3-polig", 89, 6,
              95},
             {L"Batterie {a} {b}", L"Micro AAA|Mignon AA|Baby C|Mono D|9-V-Block",
              L"2 St.|4 St.|8 St.", 39, 14, 33},
             {L"Kabelbinder {a} mm {b}", L"100|140|200|280|360", L"natur|schwarz", 29, 15, 4},
             {L"Lüsterklemme {a} mm² {b}", L"1,5|2,5|4|6|10|16", L"weiß|schwarz|natur", 14, 5, 1},
             {L"Installationsrohr {a} {b} m", L"M16|M20|M25|M32|M40", L"2|3|10|25", 19, 12, 22},
             {L"Trafo 230/{a} V {b} VA", L"6|12|18|24", L"20|50|100|200|400", 198, 12, 115},
             {L"Halogenlampe {a} W {b}", L"10|20|35|50", L"G4|GU5,3|GY6,35|GU10", 39, 3, 8},
         }},
        {4,
         L"Werkzeug",
         {
             {L"Gabelschlüssel {a} mm {b}", L"8|10|13|17|19|22|24", L"Chrom|Titan", 69, 14, 45},
             {L"Ringschlüssel {a} mm {b}", L"8|10|13|17|19|22|24", L"gerade|gekröpft", 79, 15, 18},
             {L"Schraubenzieher {a} {b}", L"Schlitz|Kreuz PH|Kreuz PZ|Torx", L"75|100|125|150|200",
              59, 16, 11},
             {L"Spiralbohrer {a} mm {b}", L"2|3|4|5|6|8|10|12", L"HSS|HSS-Co|Titan", 18, 11, 24},
             {L"Steinbohrer {a}x{b} mm", L"5|6|8|10|12|14", L"85|120|150|200|400", 29, 13, 22},
             {L"Feile {a} mm {b}", L"150|200|250|300", L"flach|halbrund|rund|dreikant|vierkant", 89,
              21, 4},
             {L"Kombizange {a} mm {b}", L"140|160|180|200|220", L"Kunststoff|isoliert|verchromt",
              179, 22, 80},
             {L"Stemmeisen {a} mm {b}", L"6|8|10|12|16|20|26|32", L"Esche|Kunststoff", 119, 16, 12},
             {L"Sägeblatt {a} mm, Z {b}", L"130|160|190|210|250", L"16|24|36|48|60", 189, 65, 48},
             {L"Wasserwaage {a} cm {b}", L"40|60|80|100|120", L"Alu|Holz|digital", 198, 57, 140},
             {L"Hammer {a} g {b}", L"200|400|600|800|1500", L"Esche|Hickory|Stahlrohr", 119, 35,
              48},
             {L"Schraubzwinge {a} mm {b}", L"150|200|300|400|600|800", L"Guss|Stahl|Einhand", 149,
              32, 40},
             {L"Steckschlüssel {a} mm {b}", L"6|8|10|13|17|19", L"1/4\"|3/8\"|1/2\"", 39, 6, 12},
         }},
        {5,
         L"Farben und Lacke",
         {
             {L"Buntlack {a} {b} ml", L"weiß|schwarz|rot|blau|gelb|grün", L"125|375|750|2500", 69,
              2, 95},
             {L"Holzlasur {a} {b} l", L"Eiche|Nuss|Teak|Kiefer|Mahagoni|farblos", L"0,75|2,5|5|10",
              159, 3, 290},
             {L"Wandfarbe {a} {b} l", L"weiß|altweiß|sand|sonnengelb|himmelblau", L"2,5|5|10|15",
              149, 18, 160},
             {L"Flachpinsel {a} mm {b}", L"20|30|40|50|70|100", L"Borste|Kunstborste", 19, 11, 5},
             {L"Farbroller {a} cm {b}", L"10|15|18|25", L"Schaum|Lammfell|Polyamid", 35, 18, 22},
             {L"Schleifpapier K{a} {b} Bogen", L"40|60|80|120|180|240|320", L"5|10|50", 24, 1, 26},
             {L"Klebeband {a} mm {b}", L"19|25|30|38|50", L"Krepp|Gewebe|transparent|Doppel", 22, 9,
              14},
             {L"Spachtelmasse {a} {b} kg", L"innen|außen|Holz", L"0,5|1|2,5|5|10", 49, 18, 55},
             {L"Acryl {a} {b} ml", L"weiß|grau|braun|anthrazit", L"80|310", 36, 2, 28},
             {L"Silikon {a} {b} ml", L"transparent|weiß|grau|braun|jasmin", L"80|310", 49, 2, 36},
             {L"Grundierung {a} {b} ml", L"Holz|Metall|Putz|Beton", L"375|750|2500|5000", 89, 12,
              140},
             {L"Spraydose {a} {b} ml", L"weiß|schwarz|rot|blau|silber|gold", L"150|400", 69, 3, 40},
             {L"Tapete {a} {b}", L"Raufaser|Streifen|Blüten|Struktur|Fliesen",
              L"weiß|beige|blau|grün", 79, 35, 4},
             {L"Abdeckfolie {a}x{b} m", L"2|3|4|5", L"3|4|5|10|20", 19, 6, 9},
         }},
        {6,
         L"Büro und Papier",
         {
             {L"Kugelschreiber {a} {b}", L"fein|mittel|breit", L"blau|schwarz|rot|grün|violett", 12,
              2, 0},
             {L"Bleistift {a} {b}", L"2H|H|HB|B|2B|4B", L"1 St.|6 St.|12 St.", 6, 1, 27},
             {L"Textmarker {a} {b}", L"gelb|grün|rosa|orange|blau", L"1 St.|4 St.|10 St.", 15, 0,
              42},
             {L"Ordner A4 {a} cm {b}", L"5|8", L"rot|blau|grün|gelb|schwarz|weiß|grau", 39, 8, 0},
             {L"Hefter A4 {a} {b}", L"Karton|Kunststoff", L"rot|blau|grün|gelb|schwarz|weiß", 7, 6,
              0},
             {L"Kopierpapier {a} {b} Blatt", L"A3|A4|A5", L"250|500|2500", 89, -18, 95},
             {L"Kuvert {a} {b} Stück", L"DL|C6|C5|C4|B4", L"25|100|500|1000", 24, 9, 85},
             {L"Notizblock {a} {b}", L"A4|A5|A6|A7", L"kariert|liniert|blanko", 32, -6, 1},
             {L"Heftklammern {a} {b} St.", L"24/6|26/6|23/8|23/15", L"1000|5000|10000", 14, 5, 24},
             {L"Stempel {a} mm {b}", L"26|36|46|60", L"rot|blau|schwarz", 198, 55, 0},
             {L"Tinte {a} {b}", L"Typ 15|Typ 23|Typ 45|Typ 78", L"schwarz|dreifarbig", 349, 28, 60},
             {L"Haftnotiz {a} mm {b}", L"38x51|51x76|76x76|76x127", L"gelb|rosa|grün|blau", 18, 9,
              1},
             {L"Reißwolf {a} {b}", L"5 Blatt|8 Blatt|12 Blatt", L"Streifen|Partikel", 690, 600,
              450},
             {L"Spiralheft {a} {b} Blatt", L"A4|A5|A6", L"40|80|120|200", 24, -5, 12},
             {L"Etiketten {a} mm {b} Blatt", L"38x21|48x25|70x36|105x48|210x297", L"10|25|100", 69,
              2, 160},
             {L"Locher {a} Blatt {b}", L"10|20|30|65", L"schwarz|blau|grau", 89, 75, 0},
             {L"Register A4 {a} {b}", L"A-Z|1-12|1-31|Jän-Dez", L"Karton|PVC", 29, 8, 15},
         }},
        {7,
         L"Sanitär und Heizung",
         {
             {L"Kupferrohr {a}x1 mm, {b} m", L"12|15|18|22|28", L"1|2,5|5|10", 48, 18, 65},
             {L"Kupferbogen {a} mm {b}°", L"12|15|18|22|28", L"45|90", 14, 6, 3},
             {L"Fitting-T-Stück {a} {b}", L"3/8\"|1/2\"|3/4\"|1\"|5/4\"",
              L"verzinkt|Messing|Rotguss", 29, 12, 22},
             {L"Muffe {a} {b}", L"3/8\"|1/2\"|3/4\"|1\"|5/4\"", L"verzinkt|Messing|Rotguss", 16, 8,
              14},
             {L"Kugelhahn {a} {b}", L"3/8\"|1/2\"|3/4\"|1\"|5/4\"", L"Hebel|Flügel", 89, 38, 6},
             {L"Waschtischmischer {a} {b}", L"Eco|Plus|Design", L"Chrom|weiß|matt", 890, 540, 120},
             {L"HT-Rohr DN {a}, {b} mm", L"40|50|75|110", L"150|250|500|1000|2000", 22, 12, 18},
             {L"HT-Bogen DN {a}, {b}°", L"40|50|75|110", L"15|30|45|67|87", 14, 8, 1},
             {L"Siphon {a} {b}", L"5/4\"|6/4\"", L"Kunststoff|Messing|Edelstahl", 98, 25, 160},
             {L"Brauseschlauch {a} cm {b}", L"125|150|175|200", L"PVC|Metall|weiß", 119, 24, 70},
             {L"Heizungsventil {a} {b}", L"3/8\"|1/2\"|3/4\"", L"Eck|gerade|Thermo", 149, 32, 55},
             {L"Rohrschelle {a} {b}", L"12 mm|15 mm|18 mm|22 mm|28 mm", L"Stahl|Gummi|Kunststoff",
              9, 3, 6},
             {L"Dichtungen {a} {b} Stück", L"Fiber|Gummi|Teflon", L"10|25|50|100", 24, 11, 32},
             {L"Flexschlauch {a} mm {b}", L"200|300|400|500|800|1000", L"3/8\"|1/2\"", 49, 9, 12},
             {L"Dämmschlauch {a} mm {b} mm", L"15|18|22|28|35|42", L"9|13|20", 12, 5, 9},
             {L"Brausekopf {a} {b}", L"1 Strahl|3 Strahl|5 Strahl", L"Chrom|weiß|matt", 149, 110,
              20},
             {L"Seifenspender {a} ml {b}", L"150|250|500|1000", L"Glas|Chrom|weiß", 129, 45, 60},
         }},
        {8,
         L"Garten und Hof",
         {
             {L"Gartenschlauch {a} {b} m", L"1/2\"|5/8\"|3/4\"", L"10|15|20|25|30|50", 149, 90, 95},
             {L"Blumentopf {a} cm {b}", L"10|14|18|24|30|40", L"Ton|Kunststoff|glasiert", 19, 28,
              24},
             {L"Blumenerde {a} {b} l", L"Universal|Balkon|Kräuter|Rosen", L"10|20|40|70", 39, 8,
              38},
             {L"Rasensamen {a} {b} kg", L"Sport|Schatten|Zier|Strapaz", L"0,5|1|2,5|5|10", 69, 12,
              110},
             {L"Schaufel {a} {b}", L"Größe 2|Größe 5|Größe 7", L"Esche|Buche|Fiberglas", 189, 30,
              65},
             {L"Rechen {a} Zinken {b}", L"10|12|14|16", L"Esche|Alu", 149, 18, 40},
             {L"Gießkanne {a} l {b}", L"5|8|10|14", L"grün|blau|verzinkt", 69, 26, 45},
             {L"Gartenschere {a} mm {b}", L"180|200|220", L"Bypass|Amboss|Profi", 169, 48, 130},
             {L"Streusalz {a} kg {b}", L"5|10|25", L"Sack|Eimer", 49, 45, 35},
             {L"Vogelfutter {a} {b} kg", L"Meisen|Spatzen|Mischung", L"1|2,5|5|10", 45, 6, 58},
             {L"Zaunlatte {a} cm {b}", L"80|100|120|150", L"Lärche|Fichte|Akazie", 36, 12, 14},
             {L"Kaminholz {a} {b} dm³", L"Buche|Birke|Eiche", L"30|60|100", 119, 14, 85},
             {L"Schneeschieber {a} cm {b}", L"40|50|60", L"Alu|Holz|PVC", 179, 45, 30},
             {L"Steckzwiebel {a} {b} Stück", L"Tulpe|Krokus|Narzisse|Lilie", L"5|10|25|50", 29, 6,
              28},
             {L"Pflanzstab {a} cm {b}", L"40|60|90|120|180", L"Bambus|Stahl|Fiberglas", 9, 5, 12},
             {L"Dünger {a} {b} kg", L"Rasen|Rosen|Tomaten|Universal|Koniferen", L"1|2,5|5|10|20",
              59, 8, 85},
             {L"Regentonne {a} l {b}", L"100|200|300|500", L"grün|grau|braun", 390, 260, 30},
         }},
        {9,
         L"Haushalt und Arbeitsschutz",
         {
             {L"Arbeitshandschuh Gr. {a} {b}", L"7|8|9|10|11", L"Leder|Nitril|Latex|Strick", 39, 1,
              14},
             {L"Sicherheitsschuh Gr. {a} {b}", L"39|40|41|42|43|44|45|46", L"S1|S2|S3", 690, 10,
              160},
             {L"Arbeitshose Gr. {a} {b}", L"48|50|52|54|56|58", L"blau|grau|grün", 349, 10, 15},
             {L"Schutzbrille {a} {b}", L"klar|getönt|gelb", L"leicht|dicht|Überbrille", 89, 15, 60},
             {L"Müllsack {a} l {b} Stück", L"30|60|120|240", L"10|25|50", 29, 18, 35},
             {L"Besen {a} cm {b}", L"30|40|50|60|80", L"Kokos|Rosshaar|Elaston", 69, 22, 45},
             {L"Kübel {a} l {b}", L"5|10|12|20", L"blau|grau|verzinkt", 45, 18, 38},
             {L"Lagerbox {a} l {b}", L"5|15|30|50|80", L"klar|blau|grau", 59, 38, 4},
             {L"Leiter {a} Sprossen {b}", L"6|8|10|12|14", L"Alu|Holz", 590, 180, 60},
             {L"Feuerlöscher {a} kg {b}", L"2|6|12", L"Pulver|Schaum", 490, 390, 310},
             {L"Türmatte {a} cm {b}", L"40x60|50x80|60x90", L"Kokos|grau|anthrazit|braun", 129, 90,
              15},
             {L"Putztuch {a} {b}", L"Microfaser|Baumwolle|Vlies", L"1 St.|5 St.|10 St.", 25, -4,
              48},
             {L"Wischtuch {a} cm {b}", L"30x30|40x40|50x60", L"blau|gelb|rosa|grün", 19, 8, 0},
             {L"Warnweste Gr. {a} {b}", L"S|M|L|XL|XXL", L"gelb|orange", 69, 3, 0},
             {L"Gehörschutz {a} dB {b}", L"22|27|32|36", L"Bügel|Stöpsel|Helm", 129, 60, 45},
             {L"Wäscheleine {a} m {b}", L"10|15|20|30|50", L"PVC|Stahl|Sisal", 35, 12, 9},
             {L"Schraubglas {a} ml {b} St.", L"125|250|500|1000", L"1|6|12", 9, 4, 42},
         }},
    };
    return groups;
}

std::vector<std::wstring> Values(std::wstring_view list) {
    std::vector<std::wstring> values;
    for (;;) {
        const std::size_t bar = list.find(L'|');
        values.emplace_back(list.substr(0, bar));
        if (bar == std::wstring_view::npos) return values;
        list.remove_prefix(bar + 1);
    }
}

std::wstring Filled(std::wstring name, const std::wstring& a, const std::wstring& b) {
    name.replace(name.find(L"{a}"), 3, a);
    name.replace(name.find(L"{b}"), 3, b);
    return name;
}

}  // namespace

std::vector<Article> SampleArticles() {
    std::vector<Article> articles;
    for (const Group& group : Groups()) {
        int number = group.thousand * 1000 + 101;
        const auto add = [&](const std::wstring& nr, std::wstring name, int price) {
            articles.push_back({nr, std::move(name), std::to_wstring(price), group.heading});
        };
        for (const Family& family : group.families) {
            const std::vector<std::wstring> as = Values(family.a);
            const std::vector<std::wstring> bs = Values(family.b);
            for (std::size_t i = 0; i < as.size(); ++i) {
                for (std::size_t j = 0; j < bs.size(); ++j) {
                    const int price = family.price + static_cast<int>(i) * family.a_step +
                                      static_cast<int>(j) * family.b_step;
                    const std::wstring nr = std::to_wstring(number++);
                    add(nr, Filled(family.name, as[i], bs[j]), price);
                    // the odd remainder, a fifth cheaper, under the number with a letter
                    if (i == 0 && j + 1 == bs.size()) {
                        const std::wstring rest = Filled(family.name, as[i], bs[j]) + L" B-Ware";
                        if (rest.size() <= 30) add(nr + L"B", rest, std::max(1, price * 4 / 5));
                    }
                }
            }
            number = (number + 9) / 10 * 10 + 1;  // each family begins with a round ten
        }
        if (group.thousand == 4) {
            add(L"4711", L"Schlosserhammer 300 g Esche", 159);
            add(L"4712", L"Schlosserhammer 500 g Esche", 189);
            add(L"4713", L"Schlosserhammer 1000 g Esche", 259);
            add(L"4714", L"Fäustel 1250 g Esche", 298);
        }
    }
    return articles;
}

}  // namespace demovex::tools
