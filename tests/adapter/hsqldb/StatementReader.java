import java.io.IOException;
import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.sql.Connection;
import java.sql.DriverManager;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.sql.Statement;

/**
 * Reads statements as another database would, in a database in memory that has the syntax mode of that database.
 *
 * <p>Arguments: the mode (mss or ora), the schema, its control rows, and the statements, each ended by "\0". Prints a
 * line for each statement: "ok" and how many rows it changed or gave, or "refused" and the message.
 */
final class StatementReader {
    private StatementReader() {}

    public static void main(String[] args) throws IOException, SQLException {
        String mode = args[0];
        try (Connection connection = DriverManager.getConnection("jdbc:hsqldb:mem:x;sql.syntax_" + mode + "=true");
                Statement statement = connection.createStatement()) {
            runScript(statement, args[1]);
            runScript(statement, args[2]);
            PrintStream out = new PrintStream(System.out, false, "UTF-8");
            for (String text : textOf(args[3]).split("\0")) out.println(answerTo(statement, text));
            out.flush();
        }
    }

    private static String textOf(String file) throws IOException {
        return new String(Files.readAllBytes(Paths.get(file)), StandardCharsets.UTF_8);
    }

    private static void runScript(Statement statement, String file) throws IOException, SQLException {
        String script = textOf(file).replaceAll("(?m)^--.*$", "");
        // The one thing of the schemas that it cannot read: a default behind the constraint.
        script = script.replace("NOT NULL DEFAULT 0", "DEFAULT 0 NOT NULL");
        for (String text : script.split(";")) {
            if (!text.isBlank()) statement.execute(text);
        }
    }

    private static String answerTo(Statement statement, String text) {
        try {
            return "ok " + (statement.execute(text) ? rowsOf(statement) : statement.getUpdateCount());
        } catch (SQLException refusal) {
            return "refused " + refusal.getMessage().replaceAll("\\s+", " ");
        }
    }

    private static int rowsOf(Statement statement) throws SQLException {
        int rows = 0;
        try (ResultSet result = statement.getResultSet()) {
            while (result.next()) rows++;
        }
        return rows;
    }
}
