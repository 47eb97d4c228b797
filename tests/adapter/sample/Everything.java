package sample;

import java.math.BigDecimal;
import java.math.BigInteger;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collection;
import java.util.Collections;
import java.util.Date;
import java.util.Enumeration;
import java.util.Iterator;
import java.util.List;

/** One operation for each thing that a call can meet. */
public class Everything extends Hidden {
    public static final int LIMIT = 12;
    public static int shared = 1;

    public String name = "field";
    public short small = 7;
    public Integer boxed = 8;
    public boolean truth = true;
    public Date moment = null;
    public final int fixed = 3;

    private String title = "untitled";
    private long total;

    // Texts and numbers as they come.
    public String echo(String text) {
        return text;
    }

    public String halfCharacter() {
        return "\uD83D";
    }

    public byte aByte() {
        return -128;
    }

    public char aChar() {
        return 'ä';
    }

    public short aShort() {
        return -32768;
    }

    public int anInt() {
        return 2147483647;
    }

    public long aLong() {
        return 4294967296L;
    }

    public long tooLong() {
        return 9007199254740993L;
    }

    public float aFloat() {
        return 1.5f;
    }

    public double aDouble() {
        return 0.1;
    }

    public double notANumber() {
        return Double.NaN;
    }

    public boolean aBoolean() {
        return true;
    }

    public Object boxedInt() {
        return 5;
    }

    public Object boxedText() {
        return "text";
    }

    public Number aDecimal() {
        return new BigDecimal("12.50");
    }

    public BigInteger aBigInteger() {
        return BigInteger.TEN;
    }

    public String nullText() {
        return null;
    }

    public Integer nullNumber() {
        return null;
    }

    public Object nullAnything() {
        return null;
    }

    public Date nullObject() {
        return null;
    }

    public Date aDate() {
        return new Date(0);
    }

    // What an argument becomes.
    public String takesByte(byte value) {
        return "byte " + value;
    }

    public String takesShort(short value) {
        return "short " + value;
    }

    public String takesInt(int value) {
        return "int " + value;
    }

    public String takesLong(long value) {
        return "long " + value;
    }

    public String takesFloat(float value) {
        return "float " + value;
    }

    public String takesDouble(double value) {
        return "double " + value;
    }

    public String takesBoolean(boolean value) {
        return "boolean " + value;
    }

    public String takesInteger(Integer value) {
        return "Integer " + value;
    }

    public String takesObject(Object value) {
        return value == null ? "null" : value.getClass().getSimpleName() + " " + value;
    }

    public String takesDate(Date value) {
        return value == null ? "null" : "Date " + value.getTime();
    }

    @SuppressWarnings("deprecation")
    public double millisOf(int year, int month, int day, int hour, int minute, int second) {
        return new Date(year, month, day, hour, minute, second).getTime();
    }

    public String timeOrText(String value) {
        return "String";
    }

    public String timeOrText(Date value) {
        return "Date";
    }

    public String timeOrText(Object value) {
        return "Object";
    }

    public String textOrObject(String value) {
        return "String";
    }

    public String textOrObject(Object value) {
        return "Object";
    }

    public String takesSelf(Everything value) {
        return value == this ? "this" : "another";
    }

    // Overloads.
    public String pick() {
        return "nothing";
    }

    public String pick(String value) {
        return "String";
    }

    public String pick(int value) {
        return "int";
    }

    public String pick(double value) {
        return "double";
    }

    public String pick(boolean value) {
        return "boolean";
    }

    public String pick(Object value) {
        return "Object";
    }

    public String pick(Date value) {
        return "Date";
    }

    public String pick(String first, int second) {
        return "String, int";
    }

    public String either(List<?> value) {
        return "List";
    }

    public String either(Date value) {
        return "Date";
    }

    public String near(Collection<?> value) {
        return "Collection";
    }

    public String near(List<?> value) {
        return "List";
    }

    public Object list() {
        return new ArrayList<>(Arrays.asList(1, 2));
    }

    public String Spelled() {
        return "Spelled";
    }

    public String spelled() {
        return "spelled";
    }

    public static String ofTheClass() {
        return "static";
    }

    // Properties.
    public String getTitle() {
        return title;
    }

    public void setTitle(String value) {
        title = value;
    }

    public boolean isOpen() {
        return true;
    }

    public long getTotal() {
        return total;
    }

    public void setTotal(long value) {
        total = value;
    }

    public String needsArgument(String value) {
        return value;
    }

    // Enumerations.
    public Enumeration<String> enumeration() {
        return Collections.enumeration(Arrays.asList("a", "b"));
    }

    public Iterator<String> iterator() {
        return Arrays.asList("a", "b").iterator();
    }

    /** Rows without an end, each a new object. */
    public Iterator<Everything> rows() {
        return new Iterator<Everything>() {
            @Override
            public boolean hasNext() {
                return true;
            }

            @Override
            public Everything next() {
                return new Everything();
            }
        };
    }

    // Failures.
    public void fail() {
        throw new IllegalStateException("no session", new java.io.IOException("closed"));
    }

    public void failSilently() {
        throw new UnsupportedOperationException();
    }

    public String failBeforeText() throws Exception {
        throw new Exception("kaputt – ü");
    }

    public void recurse() {
        recurse();
    }

    public Object fillMemory() {
        List<long[]> all = new ArrayList<>();
        while (true) all.add(new long[1 << 20]);
    }

    public void exit() {
        System.exit(3);
    }

    /** Leaves a thread behind that no one ends. */
    public void leaveThread() {
        new Thread(() -> {
            while (true) {
                try {
                    Thread.sleep(1000);
                } catch (InterruptedException ignored) {
                }
            }
        }, "left").start();
    }

    public void sayGoodbye() {
        Runtime.getRuntime().addShutdownHook(new Thread(() -> System.err.println("goodbye")));
    }

    public String property(String key) {
        return System.getProperty(key);
    }
}
