"""Runs the table example and the program that makes its files, and sums their tables up anew.

usage: table_test.py TABLE MAKE_TABLE
"""

import csv
import os
import random
import re
from decimal import Decimal

from programtest import ProgramTest, disk_of, main

TABLE, MAKE = 0, 1


class Table(ProgramTest):
    def write(self, name, text):
        with open(self.path(name), "wb") as file:
            file.write(text.encode() if isinstance(text, str) else text)

    def read(self, name):
        with open(self.path(name), newline="") as file:
            return list(csv.DictReader(file))

    def check_rows(self, came, expected):
        # One by one: the difference of two long lists takes minutes to be told.
        for row, other in zip(came, expected):
            self.assertEqual(row, other)
        self.assertEqual(len(came), len(expected))

    def check_result(self, orders_name, customers_name, done):
        """The result and the running totals are those of the plain computation."""
        groups = {}
        for row in self.read(orders_name):
            groups.setdefault(int(row["customer"]), []).append(row)
        known = {int(row["customer"]) for row in self.read(customers_name)}
        total, result, running = Decimal(0), [], []
        for customer in sorted(groups):
            amounts = [Decimal(row["amount"]) for row in groups[customer]]
            total += sum(amounts)
            result.append((customer, "yes" if customer in known else "no", len(amounts),
                           sum(int(row["quantity"]) for row in groups[customer]), sum(amounts), min(amounts),
                           max(amounts), total))
            so_far = Decimal(0)
            for row, amount in zip(groups[customer], amounts):
                so_far += amount
                running.append((int(row["order"]), customer, amount, so_far))
        came = [(int(row["customer"]), row["known"], int(row["orders"]), int(row["pieces"]), Decimal(row["total"]),
                 Decimal(row["smallest"]), Decimal(row["largest"]), Decimal(row["running_total"]))
                for row in self.read("result.csv")]
        self.check_rows(came, result)
        came = [(int(row["order"]), int(row["customer"]), Decimal(row["amount"]), Decimal(row["running_total"]))
                for row in self.read("running.csv")]
        self.check_rows(came, running)
        found = sum(row[1] == "yes" for row in result)
        self.assertRegex(done.stdout, r"known +%d +%d +%s\n" % (found, sum(row[2] for row in result if row[1] == "yes"),
                                                                sum((row[4] for row in result if row[1] == "yes"),
                                                                    Decimal("0.00"))))
        self.assertRegex(done.stdout, r"all +%d +%d +%s\n" % (len(result), len(running), total))

    def run_table(self, *arguments, **options):
        return self.run_program("--output", "result.csv", *arguments, program=TABLE, **options)

    def test_tables_as_made(self):
        # The first has several chunks of sums, and customers on both sides of their ends.
        for number, (rows, customers) in enumerate(((50000, 300), (700, 2000), (1, 1))):
            with self.subTest(rows=rows):
                made = self.run_program("--rows", str(rows), "--customers", str(customers), program=MAKE)
                self.assertEqual((made.returncode, made.stderr), (0, ""))
                orders = self.read("orders.csv")
                self.assertEqual([int(row["order"]) for row in orders], list(range(1, rows + 1)))
                self.assertEqual(len({row["customer"] for row in self.read("customers.csv")}), customers)
                done = self.run_table("--running", "running.csv", "orders.csv", "customers.csv")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.check_result("orders.csv", "customers.csv", done)

    def test_made_tables_stay_the_same(self):
        self.assertEqual(self.run_program("--rows=5", "--customers", "3", program=MAKE).returncode, 0)
        with open(self.path("orders.csv")) as file:
            first = file.read()
        self.assertEqual(self.run_program("--rows=5", "--customers", "3", "--seed", "2", program=MAKE).returncode, 0)
        with open(self.path("orders.csv")) as file:
            self.assertNotEqual(file.read(), first)
        self.assertEqual(first, "order,customer,amount,quantity\n1,10083,127.25,1\n2,10045,289.45,1\n3,10045,755.18,2\n4,10007,74.38,1\n5,10007,22.56,2\n")

    def test_files_of_other_hands(self):
        # Columns in another order, quotes, CRLF, no end of the last line, negative and large numbers, doubled customers.
        numbers = random.Random(4)
        rows = [(numbers.choice([0, 7, -5, 2**52, 10**15]), numbers.choice(["-0.5", "3", "12.25", '"8.1"', "0.00", "-7"]),
                 numbers.randrange(9), numbers.randrange(10**6)) for _ in range(200)]
        lines = ['amount,"note, or ""remark""",quantity,customer,order']
        lines += ['%s,"%s",%d,%d,%d' % (amount, numbers.choice(["", "a,b", '""', "two\r\nlines"]), quantity, customer, order)
                  for customer, amount, quantity, order in rows]
        self.write("orders.csv", "\ufeff" + "\r\n".join(lines))
        self.write("customers.csv", "customer\n7\n\n-5\n7\n99\n")
        done = self.run_table("--running=running.csv", "orders.csv", "customers.csv")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        with open(self.path("orders.csv"), encoding="utf-8-sig", newline="") as file:
            plain = file.read()
        self.write("plain.csv", plain)
        self.check_result("plain.csv", "customers.csv", done)
        # Nobody is known.
        self.write("customers.csv", "customer\n")
        done = self.run_table("--running=running.csv", "orders.csv", "customers.csv")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.check_result("plain.csv", "customers.csv", done)

    def test_bad_files(self):
        head = "order,customer,amount,quantity\n"
        good = head + "1,7,2.50,1\n"
        self.write("customers.csv", "customer\n7\n")
        bad = {
            "empty": ("", "is empty"),
            "blank": ("\n\n", "line 1: expected a column 'order', came nothing"),
            "head": (head, "no rows"),
            "column": ("order,customer,quantity\n1,2,3\n", "line 1: expected a column 'amount', came 'order, customer"),
            "twice": ("order,customer,amount,quantity,order\n", "line 1, column 5: a second column 'order'"),
            "word": (good + "2,7,many,1\n", "line 3, column 3: expected amount, a number of at most 2 decimals"),
            "decimals": (good + "2,7,2.505,1", "line 3, column 3: expected amount"),
            "point": (good + "2,7,2.,1\n", "came '2.'"),
            "exponent": (good + "2,7,1e3,1\n", "came '1e3'"),
            "space": (good + "2, 7,1,1\n", "line 3, column 2: expected customer, a whole number"),
            "nothing": (good + "\n2,7,1,\n", "line 4, column 4: expected quantity, a whole number up to 9007199254740992,"
                        " came nothing"),
            "minus": (good + "2,-,1,1\n", "came '-'"),
            "large": (good + "2,9007199254740993,1,1\n", "came '9007199254740993'"),
            "huge": (good + "2,1,%s,1\n" % ("9" * 50), "came '%s...'" % ("9" * 40)),
            "cents": (good + "2,1,90071992547410,1\n", "up to 90071992547409.92, came '90071992547410'"),
            "few": (good + "2,7,1\n3,7,1,1\n", "line 3: expected 4 cells, came 3"),
            "many": (good + "2,7,1,1,\n", "line 3: expected 4 cells, came more"),
            "open": (good + '2,7,1,"1\n3,7,1,1\n', "line 3, column 4: the quotes never end"),
            "behind": (good + '2,7,"1"0,1\n', "line 3, column 3: expected a comma"),
            "bytes": (b"\xff\xfe\x00\x01" * 50, "line 1: expected a column"),
            "sum": (head + "1,7,45000000000000,1\n" * 2, "amounts add up to more"),
        }
        for name, (content, words) in bad.items():
            with self.subTest(name):
                self.write(name, content)
                self.check_failure(self.run_table(name, "customers.csv"), 1, f"'{name}'", words)
        self.write("orders.csv", good)
        self.check_failure(self.run_table("missing.csv", "customers.csv"), 1, "'missing.csv'", "No such file")
        self.check_failure(self.run_table("orders.csv", self.folder), 1, "directory")
        self.write("customers.csv", "customer,town\n7,A\n8\n")
        self.check_failure(self.run_table("orders.csv", "customers.csv"), 1, "'customers.csv', line 3: expected 2 cells")

    def test_options_and_outputs(self):
        self.assertEqual(self.run_program("--rows", "1000", "--customers", "50", program=MAKE).returncode, 0)
        files = ["orders.csv", "customers.csv"]
        self.check_failure(self.run_table("orders.csv"), 2, "two files")
        self.check_failure(self.run_table(*files, "more.csv"), 2, "'more.csv'")
        self.check_failure(self.run_table("--sort", *files), 2, "'--sort'")
        self.check_failure(self.run_table("--running", "result.csv", *files), 2, "same file")
        self.check_failure(self.run_table("--running", "./orders.csv", *files), 1, "overwrite", "'orders.csv'")
        self.check_failure(self.run_table("--running", "no/running.csv", *files), 1, "'no/running.csv'")
        # The lines by customer fit on the disk, all orders do not: neither file comes about.
        self.check_failure(self.run_table("--running", "result2.csv", *files, preexec_fn=disk_of(9000)), 1,
                           "'result2.csv'", "File too large")
        for option, value in (("--rows", "0"), ("--rows", "3e6"), ("--customers", "-1"), ("--seed", "4294967296")):
            self.check_failure(self.run_program(option, value, program=MAKE), 2, option, f"'{value}'")
        self.check_failure(self.run_program("no", program=MAKE), 1, "'no/orders.csv'", "No such file")
        with open(self.path("orders.csv")) as file:
            before = file.read()
        self.check_failure(self.run_program("--rows", "2000", program=MAKE, preexec_fn=disk_of(9000)), 1,
                           "File too large")
        with open(self.path("orders.csv")) as file:
            self.assertEqual(file.read(), before)
        self.check_help(TABLE)
        self.check_help(MAKE)
        self.assertEqual(sorted(os.listdir(self.folder)), sorted(files))


if __name__ == "__main__":
    main(programs=2)
