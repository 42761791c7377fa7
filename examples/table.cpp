// A table from file to file: orders sorted by customer, looked up among the known ones, and summed up customer by
// customer.
#include <gpuruntime/gpuruntime.hpp>
#include <gpuruntime/recipes/recipes.hpp>

#include "support/command_line.hpp"
#include "support/csv_table.hpp"
#include "support/step.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using examples::FileError;
using examples::inDecimals;
using examples::Step;
using examples::UsageError;
using gpuruntime::recipes::DeviceArray;
using gpuruntime::recipes::Distinct;
using gpuruntime::recipes::View;

const char* const usage =
    "usage: table [--output FILE] [--running FILE] ORDERS CUSTOMERS\n"
    "  ORDERS          a CSV file with the columns order, customer, amount and quantity\n"
    "  CUSTOMERS       a CSV file of the known customers, with a column customer\n"
    "  --output FILE   where the lines by customer go, table.csv unless given\n"
    "  --running FILE  also lists all orders by customer, with the running total of each\n";

struct Options {
  std::string orders;
  std::string customers;
  std::string output = "table.csv";
  std::string running;
};

// As they stand in the file; amounts in whole cents, so that double holds their sums exactly.
struct Orders {
  std::vector<double> number, customer, cents, quantity;
};

// --- what the library does ---

using Column = DeviceArray<double>;

Column gathered(const Column& column, const Column& positions) {
  Column result(positions.size());
  gpuruntime::recipes::gather<double>(nullptr, result, column, {positions});
  return result;
}

// first[i] - second[i]: as the difference along the second dimension of a matrix of two columns.
Column minus(const Column& first, const Column& second) {
  const unsigned long n = first.size();
  Column both(n, 2), result(n);
  gpuruntime::recipes::copyOnDevice(both.data(), second.data(), second.bytes());
  gpuruntime::recipes::copyOnDevice(both.data() + n, first.data(), first.bytes());
  gpuruntime::Diff::Invoker<double>()(nullptr, result.data(), both.data(), n, 1, n);
  return result;
}

// The differences from each element to the next, the first one from 0.
Column differences(const Column& column) {
  const unsigned long n = column.size();
  Column from(n + 1), result(n);
  gpuruntime::GenericOnes::Invoker<double>()(nullptr, 1, from.data(), 0.0);
  gpuruntime::recipes::copyOnDevice(from.data() + 1, column.data(), column.bytes());
  gpuruntime::Diff::Invoker<double>()(nullptr, result.data(), from.data(), 1, n, n);
  return result;
}

Column cumulativeSums(const Column& column) {
  Column result(column.size());
  result.copyFrom(column);
  gpuruntime::recipes::cumulativeSum<double>(nullptr, result, 0);
  return result;
}

// Where the orders of each customer begin and end once they are sorted, from 1.
struct Groups {
  Column customers, begins, ends;
};

Groups groupsOf(const Column& sorted) {
  const Distinct<double> distinct(nullptr, sorted);
  Groups groups{Column(distinct.count()), Column(distinct.count()), Column(distinct.count())};
  distinct.list(groups.customers, groups.begins);
  // A group ends in front of the next one.
  std::vector<double> ends = groups.begins.toHost();
  std::transform(ends.begin() + 1, ends.end(), ends.begin(), [](double begin) { return begin - 1; });
  ends.back() = static_cast<double>(sorted.size());
  groups.ends.copyFrom(ends);
  return groups;
}

// Sums within each group: what the cumulative sum grows by from end to end.
Column totalsOf(const Column& sorted, const Groups& groups) {
  return differences(gathered(cumulativeSums(sorted), groups.ends));
}

// Cumulative sums that begin anew with each group: the first element of a group takes away the total of the one before.
Column runningTotals(const Column& sorted, const Groups& groups, const Column& totals) {
  const unsigned long n = totals.size();
  Column before(n);
  gpuruntime::GenericOnes::Invoker<double>()(nullptr, 1, before.data(), 0.0);
  gpuruntime::recipes::copyOnDevice(before.data() + 1, totals.data(), (n - 1) * sizeof(double));
  const Column firsts = minus(gathered(sorted, groups.begins), before);
  Column result(sorted.size());
  result.copyFrom(sorted);
  gpuruntime::recipes::scatter<double>(nullptr, result, firsts, {groups.begins});
  gpuruntime::recipes::cumulativeSum<double>(nullptr, result, 0);
  return result;
}

// Sorted by key and, within a key, by amount: a stable sort by amount, then one by key.
Column sortedWithin(const Column& amounts, const Column& keys) {
  Column ordered(amounts.size()), byAmount(amounts.size()), byKey(amounts.size());
  ordered.copyFrom(amounts);
  gpuruntime::recipes::sort<double>(nullptr, ordered, byAmount, 0);
  Column theirKeys = gathered(keys, byAmount);
  gpuruntime::recipes::sort<double>(nullptr, theirKeys, byKey, 0);
  return gathered(ordered, byKey);
}

// --- one table from end to end ---

// What is written of each customer, and the orders in sorted order.
struct Report {
  std::vector<double> customer, orders, pieces, total, smallest, largest, running;
  std::vector<bool> isKnown;
  std::vector<double> order, key, cents, runningOfOrder;
};

Report reportOn(const Orders& orders, const std::vector<double>& known, bool withRunning) {
  Report report;
  Step copy("copy to the device");
  const Column keys(orders.customer), cents(orders.cents), quantities(orders.quantity), knownKeys(known);
  copy.finish(std::to_string(3 * keys.bytes() / 1000000) + " MB");

  Step sort("sort by customer, with index");
  Column sortedKeys(keys.size()), index(keys.size());
  sortedKeys.copyFrom(keys);
  gpuruntime::recipes::sort<double>(nullptr, sortedKeys, index, 0);
  sort.finish();

  Step gather("gather the other columns");
  const Column sortedCents = gathered(cents, index), sortedQuantities = gathered(quantities, index);
  gather.finish();

  Step group("find the groups");
  const Groups groups = groupsOf(sortedKeys);
  const unsigned long count = groups.customers.size();
  group.finish(std::to_string(count) + " customers");

  Step member("look for known customers");
  DeviceArray<bool> isKnown(count);
  Column places(count);
  gpuruntime::recipes::isMember<double>(nullptr, isKnown, places, groups.customers, knownKeys);
  report.isKnown = isKnown.toHost();
  const long found = std::count(report.isKnown.begin(), report.isKnown.end(), true);
  member.finish(std::to_string(found) + " of them");

  Step sums("cumulative sums by customer");
  const Column totals = totalsOf(sortedCents, groups);
  report.total = totals.toHost();
  report.pieces = totalsOf(sortedQuantities, groups).toHost();
  report.orders = differences(groups.ends).toHost();
  report.running = cumulativeSums(totals).toHost();
  if (withRunning) {
    report.runningOfOrder = runningTotals(sortedCents, groups, totals).toHost();
    report.order = gathered(Column(orders.number), index).toHost();
    report.key = sortedKeys.toHost();
    report.cents = sortedCents.toHost();
  }
  sums.finish();

  Step extremes("smallest and largest by customer");
  const Column within = sortedWithin(cents, keys);
  report.smallest = gathered(within, groups.begins).toHost();
  report.largest = gathered(within, groups.ends).toHost();
  report.customer = groups.customers.toHost();
  extremes.finish();
  return report;
}

// The extremes of all orders, and their sum, for comparison with the customers'.
struct Overall {
  double sum, smallest, largest;
  std::size_t smallestRow, largestRow;  // From 0.
};

Overall overallOf(const std::vector<double>& cents) {
  const Column column(cents);
  Column value(1), position(1);
  Overall overall{};
  gpuruntime::recipes::sum<double>(nullptr, value, column);
  overall.sum = value.toHost()[0];
  gpuruntime::recipes::minimum<double>(nullptr, value, position, column);
  overall.smallest = value.toHost()[0];
  overall.smallestRow = static_cast<std::size_t>(position.toHost()[0]) - 1;
  gpuruntime::recipes::maximum<double>(nullptr, value, position, column);
  overall.largest = value.toHost()[0];
  overall.largestRow = static_cast<std::size_t>(position.toHost()[0]) - 1;
  return overall;
}

Orders readOrders(const std::string& path) {
  Step step("read the orders");
  auto columns = examples::readCsv(path, {{"order"}, {"customer"}, {"amount", 2}, {"quantity"}}, step);
  Orders orders{std::move(columns[0]), std::move(columns[1]), std::move(columns[2]), std::move(columns[3])};
  if (orders.cents.empty()) throw FileError(examples::quoted(path) + " has no rows below its first line");
  // Every sum on the way, in whatever order, is then exact.
  for (const std::vector<double>* column : {&orders.cents, &orders.quantity}) {
    double sum = 0;
    for (const double value : *column) sum += std::abs(value);
    if (sum > 0x1p52) {
      throw FileError(examples::quoted(path) + ": the " + (column == &orders.cents ? "amounts" : "quantities") +
                      " add up to more than can be summed exactly, 2^52 units of their last decimal");
    }
  }
  step.finish(std::to_string(orders.cents.size()) + " rows");
  return orders;
}

std::vector<double> readCustomers(const std::string& path) {
  Step step("read the customers");
  std::vector<double> customers = std::move(examples::readCsv(path, {{"customer"}}, step)[0]);
  step.finish(std::to_string(customers.size()) + " rows");
  return customers;
}

void writeReport(examples::OutputFile& file, const Report& report) {
  examples::CsvWriter writer(file);
  for (const char* name : {"customer", "known", "orders", "pieces", "total", "smallest", "largest"}) writer.text(name);
  writer.text("running_total").endRow();
  for (std::size_t i = 0; i < report.customer.size(); ++i) {
    writer.number(report.customer[i]).text(report.isKnown[i] ? "yes" : "no").number(report.orders[i]);
    writer.number(report.pieces[i]).number(report.total[i], 2).number(report.smallest[i], 2);
    writer.number(report.largest[i], 2).number(report.running[i], 2).endRow();
  }
  writer.finish();
  file.complete();
}

void writeRunning(examples::OutputFile& file, const Report& report, Step& step) {
  examples::CsvWriter writer(file);
  writer.text("order").text("customer").text("amount").text("running_total").endRow();
  for (std::size_t i = 0; i < report.order.size(); ++i) {
    writer.number(report.order[i]).number(report.key[i]).number(report.cents[i], 2);
    writer.number(report.runningOfOrder[i], 2).endRow();
    if (i % 65536 == 0) step.reach(static_cast<double>(i) / static_cast<double>(report.order.size()));
  }
  writer.finish();
  file.complete();
}

void save(const Options& options, const Report& report) {
  Step step("write the result");
  examples::OutputFile file(options.output);
  writeReport(file, report);
  if (!options.running.empty()) {
    examples::OutputFile runningFile(options.running);
    writeRunning(runningFile, report, step);
    runningFile.publish();
  }
  file.publish();
  step.finish(std::to_string(report.customer.size()) + " rows");
}

void printSummary(const Orders& orders, const Report& report, const Overall& overall) {
  double count[2] = {}, rows[2] = {}, total[2] = {};
  for (std::size_t i = 0; i < report.customer.size(); ++i) {
    ++count[report.isKnown[i]];
    rows[report.isKnown[i]] += report.orders[i];
    total[report.isKnown[i]] += report.total[i];
  }
  std::printf("Summary              customers       orders              total\n");
  for (const int known : {1, 0}) {
    std::printf("  %-16s %11.0f %12.0f %18s\n", known == 1 ? "known" : "not known", count[known], rows[known],
                inDecimals(total[known], 2).c_str());
  }
  std::printf("  %-16s %11zu %12zu %18s\n", "all", report.customer.size(), orders.cents.size(),
              inDecimals(overall.sum, 2).c_str());
  const auto best = std::max_element(report.total.begin(), report.total.end()) - report.total.begin();
  std::printf("  best customer    %.0f: %s\n", report.customer[static_cast<std::size_t>(best)],
              inDecimals(report.total[static_cast<std::size_t>(best)], 2).c_str());
  std::printf("  smallest amount  order %.0f: %s\n", orders.number[overall.smallestRow],
              inDecimals(overall.smallest, 2).c_str());
  std::printf("  largest amount   order %.0f: %s\n", orders.number[overall.largestRow],
              inDecimals(overall.largest, 2).c_str());
}

void run(const std::vector<std::string>& arguments) {
  Options options;
  const std::vector<std::string> files =
      examples::takeOptions(arguments, {{"--output", &options.output}, {"--running", &options.running}}, 2);
  if (files.size() != 2) throw UsageError("two files are needed: the orders and the customers");
  options.orders = files[0];
  options.customers = files[1];
  if (options.output == options.running) throw UsageError("--output and --running name the same file");

  std::printf("Device   %s\n", gpuruntime::recipes::deviceName().c_str());
  examples::requireWritable(options.output, {options.orders, options.customers});
  if (!options.running.empty()) examples::requireWritable(options.running, {options.orders, options.customers});
  const Orders orders = readOrders(options.orders);
  const std::vector<double> customers = readCustomers(options.customers);
  const Report report = reportOn(orders, customers, !options.running.empty());
  const Overall overall = overallOf(orders.cents);
  if (overall.sum != report.running.back()) {
    throw std::runtime_error("the sum of all orders is " + inDecimals(overall.sum, 2) + ", that of the customers " +
                             inDecimals(report.running.back(), 2));
  }
  save(options, report);
  printSummary(orders, report, overall);
  std::printf("Written  %s%s\n", options.output.c_str(),
              options.running.empty() ? "" : (" and " + options.running).c_str());
}

}  // namespace

int main(int count, char** arguments) {
  return examples::runProgram("table", usage, count, arguments, run);
}
