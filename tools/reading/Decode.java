// Decodes lines of a charset and bytes in hexadecimal: a line of JSON for each, null for a failure.
import java.io.BufferedReader;
import java.io.InputStreamReader;
import java.io.PrintStream;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.util.HexFormat;

class Decode {
  public static void main(String[] arguments) throws Exception {
    PrintStream out = new PrintStream(System.out, false);
    BufferedReader in = new BufferedReader(new InputStreamReader(System.in));
    for (String line = in.readLine(); line != null; line = in.readLine()) {
      String[] fields = line.split(" ");
      ByteBuffer bytes = ByteBuffer.wrap(HexFormat.of().parseHex(fields[1]));
      try {
        StringBuilder json = new StringBuilder("\"");
        Charset.forName(fields[0]).newDecoder().decode(bytes).chars()
            .forEach(unit -> json.append("\\u" + Integer.toHexString(0x10000 + unit).substring(1)));
        out.println(json.append('"'));
      } catch (CharacterCodingException | IllegalArgumentException error) {
        out.println("null");
      }
    }
    out.flush();
  }
}
