/**
 * The 4-state barcode written plainly from its published rules, without tables of logarithms or fixed buffers and
 * without a line of the product's code: what the product's encoder is compared with.
 */
#ifndef QXPAF_TESTS_UNIT_ARF_BARCODE_PLAIN_FOUR_STATE_H
#define QXPAF_TESTS_UNIT_ARF_BARCODE_PLAIN_FOUR_STATE_H

#include <map>
#include <string>
#include <vector>

namespace arf_test {

/** Table N, as it is printed. */
inline const std::map<char, std::string>& PlainNumericTable()
{
  static const std::map<char, std::string> table = {{'0', "00"}, {'1', "01"}, {'2', "02"}, {'3', "10"}, {'4', "11"},
                                                    {'5', "12"}, {'6', "20"}, {'7', "21"}, {'8', "22"}, {'9', "30"}};
  return table;
}

/** Table C, as it is printed. */
inline const std::map<char, std::string>& PlainTextTable()
{
  static const std::map<char, std::string> table = {
      {'A', "000"}, {'B', "001"}, {'C', "002"}, {'D', "010"}, {'E', "011"}, {'F', "012"}, {'G', "020"}, {'H', "021"},
      {'I', "022"}, {'J', "100"}, {'K', "101"}, {'L', "102"}, {'M', "110"}, {'N', "111"}, {'O', "112"}, {'P', "120"},
      {'Q', "121"}, {'R', "122"}, {'S', "200"}, {'T', "201"}, {'U', "202"}, {'V', "210"}, {'W', "211"}, {'X', "212"},
      {'Y', "220"}, {'Z', "221"}, {'0', "222"}, {'1', "300"}, {'2', "301"}, {'3', "302"}, {'4', "310"}, {'5', "311"},
      {'6', "312"}, {'7', "320"}, {'8', "321"}, {'9', "322"}, {' ', "003"}, {'#', "013"}, {'a', "023"}, {'b', "030"},
      {'c', "031"}, {'d', "032"}, {'e', "033"}, {'f', "103"}, {'g', "113"}, {'h', "123"}, {'i', "130"}, {'j', "131"},
      {'k', "132"}, {'l', "133"}, {'m', "203"}, {'n', "213"}, {'o', "223"}, {'p', "230"}, {'q', "231"}, {'r', "232"},
      {'s', "233"}, {'t', "303"}, {'u', "313"}, {'v', "323"}, {'w', "330"}, {'x', "331"}, {'y', "332"}, {'z', "333"}};
  return table;
}

/** a times b modulo x^6 + x + 1: shift and add, bit by bit. */
inline unsigned PlainMultiply(unsigned a, unsigned b)
{
  unsigned product = 0;
  for (; b != 0; b >>= 1) {
    if ((b & 1) != 0) product ^= a;
    a <<= 1;
    if ((a & 64) != 0) a ^= 0b1000011;
  }
  return product;
}

/** The value of a polynomial (highest power first) at x. */
inline unsigned PlainValueAt(const std::vector<unsigned>& polynomial, unsigned x)
{
  unsigned value = 0;
  for (const unsigned coefficient : polynomial) value = PlainMultiply(value, x) ^ coefficient;
  return value;
}

/** The remainder of data * x^4 divided by (x - a)(x - a^2)(x - a^3)(x - a^4), by long division on paper. */
inline std::vector<unsigned> PlainRemainder(std::vector<unsigned> data)
{
  std::vector<unsigned> divisor = {1};
  unsigned root = 1;
  for (int i = 0; i < 4; ++i) {
    root = PlainMultiply(root, 2);
    std::vector<unsigned> product(divisor.size() + 1);
    for (std::size_t k = 0; k < divisor.size(); ++k) {
      product[k] ^= divisor[k];
      product[k + 1] ^= PlainMultiply(divisor[k], root);
    }
    divisor = product;
  }
  const std::size_t size = data.size();
  data.resize(size + 4);
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned quotient = data[i];
    for (std::size_t k = 0; k < divisor.size(); ++k) data[i + k] ^= PlainMultiply(quotient, divisor[k]);
  }
  return {data.end() - 4, data.end()};
}

inline std::string PlainWrite(const std::string& text, const std::map<char, std::string>& table)
{
  std::string bars;
  for (const char c : text) bars += table.at(c);
  return bars;
}

/** A whole barcode of eight digits, a format of two, and customer information in the given table. */
inline std::string PlainFourState(const std::string& format, const std::string& dpid, const std::string& customer,
                                  bool numeric)
{
  const std::size_t length = format == "62" ? 67 : format == "59" ? 52 : 37;
  std::string data = PlainWrite(format + dpid, PlainNumericTable());
  data += PlainWrite(customer, numeric ? PlainNumericTable() : PlainTextTable());
  data.resize(length - 16, '3');
  std::vector<unsigned> symbols;
  for (std::size_t i = 0; i < data.size(); i += 3)
    symbols.push_back(static_cast<unsigned>(std::stoi(data.substr(i, 3), nullptr, 4)));
  std::string check;
  for (const unsigned symbol : PlainRemainder(symbols))
    for (const unsigned place : {16U, 4U, 1U}) check += static_cast<char>('0' + symbol / place % 4);
  return "13" + data + check + "13";
}

}  // namespace arf_test

#endif
