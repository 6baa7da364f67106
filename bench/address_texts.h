// Address lines of 30 to 60 bytes in several scripts, and texts of a megabyte
// made of them.
#ifndef QXPAF_BENCH_ADDRESS_TEXTS_H
#define QXPAF_BENCH_ADDRESS_TEXTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// What a function is measured on: it is called for every text in turn.
template <class Text>
struct Input
{
  std::string name;
  std::vector<Text> texts;
};

template <class Text>
using Inputs = std::vector<Input<Text>>;

inline constexpr std::size_t kMegabyte = 1 << 20;

inline std::string Repeated(const std::string& part, std::size_t size)
{
  std::string out;
  while (out.size() + part.size() <= size) out += part;
  return out;
}

inline Inputs<std::string> AddressLines()
{
  return {
      {"ASCII",
       {"12 Smith Street, Fitzroy VIC 3065", "Unit 12, 345-347 Old Northern Rd, Castle Hill",
        "PO Box 7, Alice Springs NT 0871", "Level 8, 22 O'Connell Street, North Melbourne VIC 3051",
        "1/26 Sir Donald Bradman Drive, Mile End SA 5031", "Shop 4, Westfield Centre, 159-175 Church St, Parramatta",
        "88 Great Eastern Highway, Belmont WA", "Lot 3 Bruce Highway, Gympie QLD 4570"}},
      {"Latin",
       {"12 Rue de l'Égalité, 75011 Paris", "São José dos Campos, Avenida São João 2200",
        "Île-de-Bréhat, 4 Chemin du Guéodet, Côtes-d'Armor", "Åkergatan 3, 212 19 Malmö, Skåne län",
        "Calle Núñez de Balboa 114, 28006 Madrid, España", "Plaça de Catalunya 8, València",
        "Łódź, ulica Świętokrzyska 20, Śródmieście", "Dvořákovo nábřeží 5, Staré Město, Praha"}},
      {"German",
       {"Straße des 17. Juni 135, 10623 Berlin", "Große Bäckerstraße 9, 20095 Hamburg",
        "Weißgerbergasse 22, 90403 Nürnberg", "Schloßstraße 1, 12163 Berlin-Steglitz", "Rößlerstraße 4, 09599 Freiberg",
        "Königsallee 27, Düsseldorf, Geschoß 3", "Fußgängerzone Süd, 76133 Karlsruhe",
        "Hauptstraße 7, 8750 Judenburg, Österreich"}},
      {"Vietnamese",
       {"Đại lộ Nguyễn Huệ, Bến Nghé, Quận 1", "14 Phố Hàng Bạc, Hoàn Kiếm, Hà Nội",
        "Số 5 Đường Lê Lợi, Thừa Thiên Huế", "26 Trần Hưng Đạo, Đà Nẵng", "73 Đường Phạm Ngũ Lão, Vũng Tàu",
        "Thị trấn Sa Pa, tỉnh Lào Cai, Việt Nam", "Ấp Mỹ Hòa, xã Mỹ Thạnh An, Bến Tre",
        "Quốc lộ 1A, thị xã Cửa Lò, Nghệ An"}},
      {"Greek",
       {"Λεωφόρος Κηφισίας 124, Αθήνα", "Οδός Ερμού 7, Σύνταγμα", "Εγνατία 45, Θεσσαλονίκη 54630",
        "Πλατεία Ελευθερίας 2, Χανιά", "Βασιλίσσης Σοφίας 18, 10674", "Ύδρα, Αργοσαρωνικός, 18040",
        "Αγίου Δημητρίου 31, Πειραιάς", "Ηρώων Πολυτεχνείου 9, Ζωγράφου"}},
      {"Cyrillic",
       {"Невский проспект 28, Россия", "Москва, улица Тверская 13", "Київ, вулиця Хрещатик 36",
        "София, бул. Витоша 61, ет. 2", "Београд, Кнез Михаилова 6", "Санкт-Петербург, Литейный 4",
        "Йошкар-Ола, площадь Ленина 1", "Ростов-на-Дону, Садовая 59"}},
      {"CJK",
       {"東京都千代田区丸の内一丁目9番1号", "大阪府大阪市北区梅田3-1-3", "北京市朝阳区建国门外大街1号",
        "上海市浦东新区世纪大道100号", "서울특별시 중구 세종대로 110", "부산광역시 해운대구 우동",
        "臺北市信義區信義路五段7號", "京都市下京区烏丸通塩小路下ル"}},
  };
}

inline std::string Joined(const std::vector<std::string>& lines)
{
  std::string out;
  for (const std::string& line : lines) out += line + "\n";
  return out;
}

// "ASCII line", "ASCII 1 MB" and so on, in UTF-8.
inline const Inputs<std::string>& AddressTexts()
{
  static const Inputs<std::string> inputs = [] {
    Inputs<std::string> out;
    for (const Input<std::string>& script : AddressLines()) {
      out.push_back({script.name + " line", script.texts});
      out.push_back({script.name + " 1 MB", {Repeated(Joined(script.texts), kMegabyte)}});
    }
    return out;
  }();
  return inputs;
}

// The same text 64 KB and 1 MB long: work in proportion to the length takes 16
// times as long on the second.
inline Inputs<std::string> Doubling(const std::string& name, const std::string& part)
{
  return {{name + " 64 KB", {Repeated(part, kMegabyte / 16)}}, {name + " 1 MB", {Repeated(part, kMegabyte)}}};
}

// The inputs that `wanted` says yes to, converted.
template <class Convert, class Wanted>
auto Converted(const Inputs<std::string>& inputs, Convert convert, Wanted wanted)
{
  Inputs<decltype(convert(std::string()))> out;
  for (const Input<std::string>& input : inputs) {
    if (!wanted(input.name)) continue;
    out.push_back({input.name, {}});
    for (const std::string& text : input.texts) out.back().texts.push_back(convert(text));
  }
  return out;
}

template <class Convert>
auto Converted(const Inputs<std::string>& inputs, Convert convert)
{
  return Converted(inputs, convert, [](const std::string&) { return true; });
}

}  // namespace bench

#endif
