// Makes two CSV files for the table example: orders of some millions of rows, and the customers known. The same options
// give the same files on every machine.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/device_array.hpp>

#include "support/command_line.hpp"
#include "support/csv_table.hpp"
#include "support/step.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

namespace {

using examples::Step;
using gpuruntime::recipes::DeviceArray;

constexpr unsigned long rowsPerPiece = 1UL << 20;

const char* const usage =
    "usage: make_table [--rows COUNT] [--customers COUNT] [--seed NUMBER] [FOLDER]\n"
    "  FOLDER             where orders.csv and customers.csv go; without it, here\n"
    "  --rows COUNT       rows of orders, 3000000 unless given\n"
    "  --customers COUNT  known customers, 20000 unless given; a tenth as many are not known\n"
    "  --seed NUMBER      other numbers for another one, 1 unless given\n";

struct Options {
  std::filesystem::path folder = ".";
  unsigned long rows = 3000000;
  unsigned long customers = 20000;
  unsigned long seed = 1;
};

// What is drawn for an order, each from a stream of its own.
enum class Draw : unsigned int { customer, price, quantity, refund };

// `count` values from 0 to 1, the same for one seed, kind and piece.
std::vector<double> drawn(const Options& options, Draw what, unsigned long piece, unsigned long count) {
  // The key tells seeds and kinds apart, and the counter's second word the pieces.
  unsigned int state[7] = {static_cast<unsigned int>(options.seed),
                           static_cast<unsigned int>(what),
                           0,
                           static_cast<unsigned int>(piece),
                           0,
                           0,
                           0};
  DeviceArray<double> values(count);
  gpuruntime::Rand<gpucommon::rand::Philox4x32Generator>::Invoker<double>()(nullptr, values.data(), state, count);
  return values.toHost();
}

// Customers are numbered with gaps.
double keyOf(unsigned long customer) {
  return static_cast<double>(10007 + 37 * customer + customer % 5);
}

void writeCustomers(examples::OutputFile& file, const Options& options) {
  Step step("write the customers");
  const char* const districts[] = {"North", "East", "South", "West"};
  examples::CsvWriter writer(file);
  writer.text("customer").text("town").endRow();
  // In a mixed order that meets each of them once.
  unsigned long stride = 7919;
  while (std::gcd(stride, options.customers) != 1) ++stride;
  for (unsigned long i = 0; i < options.customers; ++i) {
    const unsigned long customer = i * stride % options.customers;
    const std::string town = "Town " + std::to_string(customer % 97) + ", " + districts[customer % 4];
    writer.number(keyOf(customer)).text(town).endRow();
  }
  writer.finish();
  file.complete();
  step.finish(std::to_string(options.customers) + " rows");
}

void writeOrders(examples::OutputFile& file, const Options& options) {
  Step step("write the orders");
  examples::CsvWriter writer(file);
  writer.text("order").text("customer").text("amount").text("quantity").endRow();
  const double customers = static_cast<double>(options.customers + options.customers / 10);
  for (unsigned long first = 0; first < options.rows; first += rowsPerPiece) {
    const unsigned long count = std::min(rowsPerPiece, options.rows - first), piece = first / rowsPerPiece;
    const std::vector<double> customer = drawn(options, Draw::customer, piece, count),
                              price = drawn(options, Draw::price, piece, count),
                              quantity = drawn(options, Draw::quantity, piece, count),
                              refund = drawn(options, Draw::refund, piece, count);
    for (unsigned long i = 0; i < count; ++i) {
      // Some customers order often, most things are cheap, and one order in a hundred is paid back.
      const auto number = static_cast<unsigned long>(customer[i] * customer[i] * customers);
      const double pieces = 1 + std::floor(quantity[i] * quantity[i] * 9);
      const double cents = 99 + std::floor(price[i] * price[i] * price[i] * 50000);
      writer.number(static_cast<double>(first + i + 1)).number(keyOf(number));
      writer.number((refund[i] < 0.01 ? -1 : 1) * cents * pieces, 2).number(pieces).endRow();
    }
    step.reach(static_cast<double>(first + count) / static_cast<double>(options.rows));
  }
  writer.finish();
  file.complete();
  step.finish(std::to_string(options.rows) + " rows");
}

void run(const std::vector<std::string>& arguments) {
  Options options;
  std::string rows, customers, seed;
  const std::vector<std::string> folders =
      examples::takeOptions(arguments, {{"--rows", &rows}, {"--customers", &customers}, {"--seed", &seed}}, 1);
  if (!folders.empty()) options.folder = folders[0];
  if (!rows.empty()) options.rows = examples::wholeNumber("--rows", rows, 1, 1000000000);
  if (!customers.empty()) options.customers = examples::wholeNumber("--customers", customers, 1, 100000000);
  if (!seed.empty()) options.seed = examples::wholeNumber("--seed", seed, 0, 4294967295);

  const std::string orders = (options.folder / "orders.csv").lexically_normal().string();
  const std::string known = (options.folder / "customers.csv").lexically_normal().string();
  examples::OutputFile orderFile(orders), customerFile(known);
  writeCustomers(customerFile, options);
  writeOrders(orderFile, options);
  customerFile.publish();
  orderFile.publish();
  std::printf("Written  %s and %s\n", orders.c_str(), known.c_str());
}

}  // namespace

int main(int count, char** arguments) {
  return examples::runProgram("make_table", usage, count, arguments, run);
}
